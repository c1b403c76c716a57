// What all fuzz targets share.
#pragma once

#include <cstdlib>
#include <string_view>

#include "toolkit/Questions.h"

namespace orvin::fuzzing {

/// Nobody is told anything, and questions get the cautious answer.
class Silent : public HeadlessQuestions {
    void showMessage(std::string_view, bool) override {}
};

/// What doesn't hold is a crash that the fuzzer keeps.
inline void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace orvin::fuzzing
