#include "render/ImageMap.h"

#include <array>
#include <cmath>

#include "render/ImageFile.h"
#include "render/image/ImageCache.h"
#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

ImageMap& imageMap(Persistent& self) {
    return static_cast<ImageMap&>(self);
}

Result readImageFile(SceneStream& stream, Persistent& self) {
    std::string name;
    if (stream.readText(name) != kSuccess) return kFailure;
    imageMap(self).setImageFile(name);
    return kSuccess;
}

Result readDomain(SceneStream& stream, Persistent& self) {
    MapDomain domain;
    bool finite = true;
    for (double* value : {&domain.lowS, &domain.highS, &domain.lowT, &domain.highT}) {
        if (stream.readDouble(*value) != kSuccess) return kFailure;
        finite = finite && std::isfinite(*value);
    }
    if (finite) imageMap(self).setDomain(domain);
    return kSuccess;
}

template <void (Transform::*Set)(Vec3)>
Result readPlacement(SceneStream& stream, Persistent& self) {
    Vec3 value;
    if (stream.readVector3(value) != kSuccess) return kFailure;
    if (std::isfinite(value.x + value.y + value.z)) (imageMap(self).placement().*Set)(value);
    return kSuccess;
}

}  // namespace

// ---- ResolvedMap

ResolvedMap::ResolvedMap(const SummedImage& image, const MapDomain& domain,
                         const Matrix4& placement)
    : image_(&image),
      domain_(domain),
      scaleS_(1.0 / (domain.highS - domain.lowS) * (image.width() - 1)),
      scaleT_(1.0 / (domain.highT - domain.lowT) * (image.height() - 1)),
      reflection_(normalMatrix(placement)) {}

bool ResolvedMap::color(const TextureBox& box, Rgba& out) const {
    if (image_ == nullptr) return false;
    out =
        image_->sampleBox((box.sMin - domain_.lowS) * scaleS_, (box.tMin - domain_.lowT) * scaleT_,
                          (box.sMax - domain_.lowS) * scaleS_, (box.tMax - domain_.lowT) * scaleT_);
    return true;
}

bool ResolvedMap::channel(const TextureBox& box, int channel, float& out) const {
    Rgba sampled;
    if (!color(box, sampled)) return false;
    out = channel == 3 && !image_->hasAlpha() ? luminance(sampled)
                                              : sampled[static_cast<std::size_t>(channel)];
    return true;
}

// ---- ImageMap

ImageMap::ImageMap(SceneX& scene, std::string_view name)
    : SceneMember(scene, MemberKind::kImageMap, name), imageFile_(scene.registry(), kNoMember) {}

ImageMap::ImageMap(SceneX& scene, const ImageMap& source, std::string_view name)
    : SceneMember(scene, source, name),
      imageFile_(scene.registry(), source.imageFile_.name()),
      domain_(source.domain_),
      placement_(source.placement_) {}

ImageFile* ImageMap::imageFile() const {
    return imageFile_.as<ImageFile>();
}

void ImageMap::setImageFile(std::string_view name) {
    imageFile_ = NameRef(scene().registry(), name);
}

std::vector<NameRef*> ImageMap::references() {
    return {&imageFile_};
}

std::string ImageMap::imagePath() const {
    const ImageFile* file = imageFile();
    if (file != nullptr && !file->path().empty()) return file->path();
    // "|ExtMap3.1" is a copy of the map of Layer Map 3, whose name was taken.
    return name().starts_with(kExtMapPrefix) ? name().substr(0, name().find('.')) : std::string();
}

ResolvedMap ImageMap::resolve() const {
    const std::string path = imagePath();
    const SummedImage* image = path.empty() ? nullptr : findImage(path);
    if (image == nullptr) return {};
    return ResolvedMap(*image, domain_, placement_.matrix());
}

Result ImageMap::colorAt(const TextureBox& box, bool& found, Rgba& out) const {
    found = resolve().color(box, out);
    return found ? kSuccess : kFailure;
}

Result ImageMap::channelAt(const TextureBox& box, int channel, bool& found, float& out) const {
    found = channel >= 0 && channel <= 3 && resolve().channel(box, channel, out);
    return found ? kSuccess : kFailure;
}

void ImageMap::releaseImage() {
    if (ImageFile* file = imageFile()) file->releaseImage();
}

const CommandRegistry& ImageMap::commandRegistry() const {
    struct Commands : CommandRegistry {
        Commands() : CommandRegistry(16) {
            registerMemberCommands(*this);
            lookupOrInsert("imageFile", readImageFile);
            lookupOrInsert("domain", readDomain);
            lookupOrInsert("translate", readPlacement<&Transform::setTranslate>);
            lookupOrInsert("rotate", readPlacement<&Transform::setRotate>);
            lookupOrInsert("scale", readPlacement<&Transform::setScale>);
        }
    };
    static const Commands commands;
    return commands;
}

Result ImageMap::writeBody(SceneStream& stream) {
    const std::array domain{domain_.lowS, domain_.highS, domain_.lowT, domain_.highT};
    const bool failed = SceneMember::writeBody(stream) ||
                        stream.putText("imageFile", imageFile_.name()) ||
                        stream.putDoubles("domain", domain) ||
                        stream.putVector("translate", placement_.translate()) ||
                        stream.putVector("rotate", placement_.rotate()) ||
                        stream.putVector("scale", placement_.scale());
    return failed ? kFailure : kSuccess;
}

}  // namespace orvin
