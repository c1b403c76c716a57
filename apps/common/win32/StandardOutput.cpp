#include "common/StandardOutput.h"

#include <fcntl.h>
#include <io.h>

namespace orvin::apps {

namespace {

constexpr int kStandardOutput = 1;

}  // namespace

std::FILE* duplicateStandardOutput() {
    std::fflush(stdout);
    const int copy = _dup(kStandardOutput);
    return copy < 0 ? nullptr : _fdopen(copy, "w");
}

void silenceStandardOutput() {
    std::fflush(stdout);
    const int null = _open("NUL", _O_WRONLY);
    if (null < 0 || null == kStandardOutput) return;
    _dup2(null, kStandardOutput);
    _close(null);
}

void sendStandardOutputTo(std::FILE* stream) {
    std::fflush(stdout);
    _dup2(_fileno(stream), kStandardOutput);
}

}  // namespace orvin::apps
