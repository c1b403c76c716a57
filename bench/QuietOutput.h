// The benchmarks' table and what the kernels print go the same way out.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace orvin::benches {

/// What the geometry kernels print goes nowhere for a while.
class QuietOutput {
  public:
    QuietOutput() {
        std::fflush(stdout);
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~QuietOutput() {
        std::fflush(stdout);
        dup2(kept_, STDOUT_FILENO);
        close(kept_);
    }
    QuietOutput(const QuietOutput&) = delete;
    QuietOutput& operator=(const QuietOutput&) = delete;

  private:
    int kept_ = dup(STDOUT_FILENO);
};

}  // namespace orvin::benches
