// Any bytes as a FACT file.
#include <cstdint>

#include "fuzz/ModelFuzzing.h"
#include "interchange/fact/FactReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvin;
    ImportedGroups model;
    if (fuzzing::parseBothWays(parseFact, {data, size}, model) != kSuccess) return 0;
    fuzzing::require(!model.groups.empty());
    fuzzing::requireSoundGroups(model, size);
    return 0;
}
