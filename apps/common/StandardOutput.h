// Where the process's standard output goes, as the platform sees it.
#pragma once

#include <cstdio>

namespace orvin::apps {

/// A second stream to where standard output goes now; null where that is closed.
std::FILE* duplicateStandardOutput();

/// Sends standard output to the null device or to the place of another stream.
void silenceStandardOutput();
void sendStandardOutputTo(std::FILE* stream);

}  // namespace orvin::apps
