#include "render/RenderClasses.h"

#include "render/CameraX.h"
#include "render/ImageFile.h"
#include "render/ImageMap.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "scene/MemberClasses.h"

namespace orvin {

namespace {

template <typename T>
std::unique_ptr<SceneMember> create(SceneX& scene, std::string_view name) {
    return std::make_unique<T>(scene, name);
}

template <typename T>
std::unique_ptr<SceneMember> clone(SceneX& scene, const SceneMember& source,
                                   std::string_view name) {
    return std::make_unique<T>(scene, dynamic_cast<const T&>(source), name);
}

template <typename T>
void add(std::string_view className, std::string_view autoNamePrefix) {
    registerMemberClass({className, autoNamePrefix, create<T>, clone<T>});
}

}  // namespace

void registerRenderClasses() {
    add<CameraX>("CameraX", "camera");
    add<LightX>("LightX", "light");
    add<MaterialX>("MaterialX", "material");
    add<ImageMap>("ImageMap", "imagemap");
    add<ImageFile>("ImageFile", "imagefile");
}

}  // namespace orvin
