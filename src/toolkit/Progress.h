// The process-wide progress hook: long work polls it and stops where it says so.
#pragma once

#include <functional>

namespace orvin {

/// Receives current and total work; a non-zero answer stops the work.
using ProgressCallback = std::function<int(int current, int total)>;

/// Installs a callback (an empty one removes it) and clears the stop state. The hook belongs to the
/// thread that installs it: two threads can render at once without hearing each other.
void setProgress(ProgressCallback callback);

/// Polls the callback. Once it has answered non-zero every later poll returns that answer without
/// asking again, until clearProgressStop() or setProgress(). 0 means: go on.
int pollProgress(int current, int total);

/// The stored non-zero answer, 0 if none.
int progressStop();

/// Forgets a stored answer; the start of each frame does this.
void clearProgressStop();

}  // namespace orvin
