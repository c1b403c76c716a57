// Any bytes as a DXF file.
#include <cstdint>

#include "fuzz/ModelFuzzing.h"
#include "interchange/dxf/DxfReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvin;
    ImportedGroups model;
    if (fuzzing::parseBothWays(parseDxf, {data, size}, model) != kSuccess) return 0;
    fuzzing::require(model.groups.size() <= kDxfMaxLayers);
    for (const ImportedGroup& layer : model.groups)
        fuzzing::require(layer.materials[0] != ImportedGroup::kNoMaterial);
    fuzzing::requireSoundGroups(model, size);
    return 0;
}
