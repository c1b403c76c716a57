#include "common/StandardOutput.h"

#include <fcntl.h>
#include <unistd.h>

namespace orvin::apps {

std::FILE* duplicateStandardOutput() {
    std::fflush(stdout);
    const int copy = dup(STDOUT_FILENO);
    return copy < 0 ? nullptr : fdopen(copy, "w");
}

void silenceStandardOutput() {
    std::fflush(stdout);
    const int null = open("/dev/null", O_WRONLY);
    if (null < 0 || null == STDOUT_FILENO) return;
    dup2(null, STDOUT_FILENO);
    close(null);
}

void sendStandardOutputTo(std::FILE* stream) {
    std::fflush(stdout);
    dup2(fileno(stream), STDOUT_FILENO);
}

}  // namespace orvin::apps
