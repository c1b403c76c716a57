// A program's results on standard output, without what the kernels print there.
#pragma once

#include <cstdio>
#include <string_view>

namespace orvin::apps {

/// The kernels and the effect report their progress on standard output. While an object of this
/// class lives, only what is written through it gets there; the rest goes to the null device. One
/// at a time.
class ProgramOutput {
  public:
    ProgramOutput();
    ~ProgramOutput();
    ProgramOutput(const ProgramOutput&) = delete;
    ProgramOutput& operator=(const ProgramOutput&) = delete;

    /// Throws Failure where standard output is closed or takes no more.
    void write(std::string_view text);

    /// From now on what others print to standard output goes to standard error.
    void showDiagnostics();

  private:
    std::FILE* own_;  // null: standard output was closed
};

}  // namespace orvin::apps
