// Long work with a progress bar for the length of a scope.
#pragma once

#include <string_view>

#include "common/ProgressBar.h"
#include "toolkit/Progress.h"

namespace orvin::orvinex {

class ShownProgress {
  public:
    ShownProgress(std::string_view label, bool quiet) : bar_(label, quiet) {
        setProgress([this](int current, int total) {
            if (total > 0) bar_.update(static_cast<double>(current) / total);
            return 0;
        });
    }
    ~ShownProgress() { setProgress({}); }
    ShownProgress(const ShownProgress&) = delete;
    ShownProgress& operator=(const ShownProgress&) = delete;

  private:
    apps::ProgressBar bar_;
};

}  // namespace orvin::orvinex
