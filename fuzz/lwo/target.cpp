// Any bytes as a LightWave file.
#include <cstdint>

#include "fuzz/ModelFuzzing.h"
#include "interchange/lightwave/LwoReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvin;
    ImportedGroups model;
    if (fuzzing::parseBothWays(parseLwo, {data, size}, model) != kSuccess) return 0;
    fuzzing::require(!model.groups.empty());
    fuzzing::requireSoundGroups(model, size);
    return 0;
}
