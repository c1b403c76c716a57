// A progress bar on standard error, drawn only where that is a terminal.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace orvin::apps {

class ProgressBar {
  public:
    /// `quiet` silences it everywhere.
    ProgressBar(std::string_view label, bool quiet);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// `done` of the whole, 0 to 1; draws at most some ten times a second.
    void update(double done);
    /// Takes the bar off the line, so that a message can be printed.
    void clear();

  private:
    std::string label_;
    bool shown_ = false;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point last_;
};

/// Whether standard error is a terminal.
bool errorIsTerminal();

}  // namespace orvin::apps
