// What the fuzz targets of projects share.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "fuzz/Fuzzing.h"
#include "geometry/ModelHooks.h"
#include "setup/StartUp.h"
#include "toolkit/Questions.h"

namespace orvin::fuzzing {

/// Every member class is known, nobody is told anything, and no model file is read or written,
/// whatever a project names. Runs once.
inline void prepareForProjects() {
    static Silent silent;
    static const bool ready = [] {
        setQuestions(&silent);
        registerMemberClasses();
        setModelHooks({});
        return true;
    }();
    require(ready);
}

/// Texture vertices turn by a quarter each time they are read, and a text's font height comes back
/// as something else: they can't be compared.
inline std::string comparable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        const std::string_view line = text.substr(0, end);
        const std::size_t start = line.find_first_not_of(' ');
        const std::string_view rest = line.substr(std::min(start, line.size()));
        if (!rest.starts_with("vt ") && !rest.starts_with("fontParms ")) result += line;
        text.remove_prefix(end);
    }
    return result;
}

}  // namespace orvin::fuzzing
