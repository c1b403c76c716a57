#include "common/ProgressBar.h"

#include <algorithm>
#include <cstdio>

namespace orvin::apps {

ProgressBar::ProgressBar(std::string_view label, bool quiet)
    : label_(label),
      shown_(!quiet && errorIsTerminal()),
      start_(std::chrono::steady_clock::now()),
      last_(start_ - std::chrono::hours(1)) {}

ProgressBar::~ProgressBar() {
    clear();
}

void ProgressBar::update(double done) {
    if (!shown_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ < std::chrono::milliseconds(80)) return;
    last_ = now;
    drawn_ = true;
    constexpr int kCells = 32;
    const double part = std::clamp(done, 0.0, 1.0);
    const int filled = static_cast<int>(part * kCells);
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const int left = part > 0.01 ? static_cast<int>(seconds * (1.0 - part) / part + 0.5) : -1;
    std::string bar(static_cast<std::size_t>(filled), '#');
    bar.resize(kCells, '.');
    std::fprintf(stderr, "\r%s [%s] %3d %%", label_.c_str(), bar.c_str(),
                 static_cast<int>(part * 100.0));
    if (left >= 0) std::fprintf(stderr, "  %d s left   ", left);
    std::fflush(stderr);
}

void ProgressBar::clear() {
    if (!drawn_) return;
    drawn_ = false;
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(label_.size()) + 64, "");
    std::fflush(stderr);
}

}  // namespace orvin::apps
