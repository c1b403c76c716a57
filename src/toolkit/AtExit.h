// What must happen when a scope ends, whether by return or by exception.
#pragma once

#include <utility>

namespace orvin {

/// Runs a function at the end of the scope, however that is reached.
template <typename Leave>
class AtExit {
  public:
    explicit AtExit(Leave leave) : leave_(std::move(leave)) {}
    ~AtExit() { leave_(); }
    AtExit(const AtExit&) = delete;
    AtExit& operator=(const AtExit&) = delete;

  private:
    Leave leave_;
};

}  // namespace orvin
