// Flat sequence data, as a host's project may hold it, through a whole life: re-setup, flatten,
// re-setup from that, set-down. The bytes are what stands behind the tag.
#include <cstddef>
#include <cstdint>
#include <string>

#include "../../tests/host/FakeHost.h"
#include "fuzz/Fuzzing.h"
#include "toolkit/Questions.h"

namespace {

using orvin::fuzzing::require;

class Silent final : public orvin::HeadlessQuestions {
  public:
    void showMessage(std::string_view, bool) override {}
    int ask(std::string_view, std::string_view, std::string_view, std::string_view) override {
        return 0;
    }
    std::optional<std::filesystem::path> openFile(std::string_view, std::string_view) override {
        return std::nullopt;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Silent silent;
    orvin::setQuestions(&silent);
    orvin::FakeHost host;
    std::string flat("FLAT\x01\0\0\0", 8);
    flat.append(reinterpret_cast<const char*>(data), size);

    orvin::PF_Handle sequence = host.handleOf(flat);
    orvin::PF_Handle original = sequence;
    if (host.call(orvin::PF_Cmd_SEQUENCE_RESETUP, sequence) != 0) {
        // Out of memory, say: the host's data must still be the host's.
        require(sequence == nullptr);
        require(host.bytesOf(original) == flat);
        host.dispose(original);
    } else {
        if (host.call(orvin::PF_Cmd_SEQUENCE_FLATTEN, sequence) == 0)
            host.call(orvin::PF_Cmd_GLOBAL_SETDOWN);  // no way back but through the bytes
        require(host.call(orvin::PF_Cmd_SEQUENCE_RESETUP, sequence) == 0);
        require(host.call(orvin::PF_Cmd_SEQUENCE_SETDOWN, sequence) == 0);
    }
    host.call(orvin::PF_Cmd_GLOBAL_SETDOWN);
    require(host.mistakes.empty());
    require(host.handleCount() == 0);
    return 0;
}
