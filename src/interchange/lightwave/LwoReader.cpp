#include "interchange/lightwave/LwoReader.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "interchange/ModelFile.h"
#include "interchange/lightwave/LwoChunks.h"
#include "interchange/lightwave/LwoFormat.h"
#include "toolkit/Progress.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

Result parseLwo(ModelInput& input, ImportedGroups& model) {
    if (input.size() > 0xFFFFFFFFU) return kFailure;
    ByteReader in(input);
    const bool isForm = in.u32() == lwo::kForm;
    const std::size_t size = in.u32();
    ByteReader form = in.take(std::min(size, in.rest()));
    const std::uint32_t type = form.u32();
    if (!isForm || (type != lwo::kLwob && type != lwo::kLwo2)) return kFailure;

    lwo::Surfaces surfaces(input, model);
    lwo::Layer layer(model, surfaces);
    const Result result = type == lwo::kLwob ? lwo::readLwobChunks(form, layer, surfaces)
                                             : lwo::readLwo2Chunks(form, layer, surfaces);
    if (result != kSuccess) return result;
    if (model.groups.empty()) model.groups.emplace_back().name = kLwoDefaultGroup;
    return kSuccess;
}

Result readLwo(const std::filesystem::path& path, ImportedGroups& model) {
    auto input = ModelInput::open(path);
    if (!input) return kFailure;
    const Result result = parseLwo(*input, model);
    if (input->failed()) {
        reportUnopened(path);
        return kFailure;
    }
    if (result == kSuccess) return kSuccess;
    if (progressStop() == 0)
        std::fprintf(stderr, "read_lwo: '%s' is no LightWave object.\n",
                     platform::textFromPath(path).c_str());
    return kFailure;
}

Result importLwo(SceneX& scene, const std::filesystem::path& path, std::vector<ObjectP*>* made) {
    ImportedGroups model;
    if (readLwo(path, model) != kSuccess) return kFailure;
    auto objects = addToScene(scene, std::move(model), path, ModelFileType::kLwo);
    if (made != nullptr) *made = std::move(objects);
    return kSuccess;
}

}  // namespace orvin
