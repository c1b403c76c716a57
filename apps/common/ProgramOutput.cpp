#include "common/ProgramOutput.h"

#include "common/Options.h"
#include "common/StandardOutput.h"

namespace orvin::apps {

ProgramOutput::ProgramOutput() : own_(duplicateStandardOutput()) {
    silenceStandardOutput();
}

ProgramOutput::~ProgramOutput() {
    if (own_ == nullptr) return;
    sendStandardOutputTo(own_);
    std::fclose(own_);
}

void ProgramOutput::write(std::string_view text) {
    if (own_ == nullptr || std::fwrite(text.data(), 1, text.size(), own_) != text.size() ||
        std::fflush(own_) != 0)
        throw Failure("can't write to standard output");
}

void ProgramOutput::showDiagnostics() {
    sendStandardOutputTo(stderr);
}

}  // namespace orvin::apps
