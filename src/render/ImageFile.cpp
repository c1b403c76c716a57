#include "render/ImageFile.h"

#include <filesystem>
#include <utility>

#include "render/image/ImageCache.h"
#include "render/image/PictureOf.h"
#include "scene/FileFlags.h"
#include "scene/SceneStream.h"
#include "scene/SceneX.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

ImageFile& imageFile(Persistent& self) {
    return static_cast<ImageFile&>(self);
}

Result readImage(SceneStream& stream, Persistent& self) {
    std::string path;
    if (stream.readText(path, ImageFile::kPathLimit + 1) != kSuccess) return kFailure;
    imageFile(self).setPath(path);
    return kSuccess;
}

bool isThere(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(platform::pathFromText(path), error) && !error;
}

}  // namespace

ImageFile::ImageFile(SceneX& scene, std::string_view name)
    : SceneMember(scene, MemberKind::kImageFile, name) {}

ImageFile::ImageFile(SceneX& scene, const ImageFile& source, std::string_view name)
    : SceneMember(scene, source, name), path_(source.path_) {
    if (source.thumbnail_) thumbnail_ = std::make_unique<twPicture>(*source.thumbnail_);
}

void ImageFile::setPath(std::string_view path) {
    path_ = path.substr(0, kPathLimit);
}

void ImageFile::setThumbnail(std::unique_ptr<twPicture> picture) {
    thumbnail_ = picture && !picture->empty() ? std::move(picture) : nullptr;
}

void ImageFile::releaseImage() {
    if (!path_.empty()) orvin::releaseImage(path_);
}

Result ImageFile::reload(const ImageLocator& locate) {
    if (path_.empty() || path_.starts_with('|')) return kSuccess;
    releaseImage();
    std::string found = path_;
    if (!isThere(found)) {
        const auto located = locate ? locate(path_) : std::nullopt;
        if (!located || located->empty() || located->size() > kPathLimit) return kFailure;
        found = *located;
    }
    path_ = std::move(found);
    releaseImage();
    const SummedImage* image = findImage(path_);
    setThumbnail(image != nullptr ? std::make_unique<twPicture>(pictureOf(*image)) : nullptr);
    return kSuccess;
}

Result ImageFile::readSize(SceneStream& stream, Persistent& self) {
    return readThumbnailSize(stream, imageFile(self).incoming_);
}

Result ImageFile::readPixels(SceneStream& stream, Persistent& self) {
    return imageFile(self).adoptPixels(stream, ThumbnailForm::kText);
}

Result ImageFile::readBinaryPixels(SceneStream& stream, Persistent& self) {
    return imageFile(self).adoptPixels(stream, ThumbnailForm::kBinary);
}

Result ImageFile::adoptPixels(SceneStream& stream, ThumbnailForm form) {
    const ThumbnailSize size = std::exchange(incoming_, {});
    setThumbnail(readThumbnail(stream, size, form, gFileFromOtherPlatform));
    return thumbnail_ ? kSuccess : kFailure;
}

const CommandRegistry& ImageFile::commandRegistry() const {
    struct Commands : CommandRegistry {
        Commands() : CommandRegistry(16) {
            registerMemberCommands(*this);
            lookupOrInsert("image", readImage);
            lookupOrInsert("ThumbnailSize", readSize);
            lookupOrInsert("Thumbnail", readPixels);
            lookupOrInsert("BinaryThumbnail", readBinaryPixels);
        }
    };
    static const Commands commands;
    return commands;
}

Result ImageFile::writeBody(SceneStream& stream) {
    // Rows too long for text still fit as bytes: a large thumbnail must not cost the save.
    const bool fitsText =
        thumbnail_ && static_cast<std::size_t>(thumbnail_->width()) * 6 <= kThumbnailRowLimit;
    const auto form =
        gSaveThumbnailsAscii && fitsText ? ThumbnailForm::kText : ThumbnailForm::kBinary;
    const bool failed = SceneMember::writeBody(stream) || stream.putText("image", path_) ||
                        (thumbnail_ && writeThumbnail(stream, *thumbnail_, form));
    return failed ? kFailure : kSuccess;
}

Result reloadImages(SceneX& scene, const ImageLocator& locate) {
    Result result = kSuccess;
    for (SceneMember* member : scene.members(MemberKind::kImageFile)) {
        auto* file = dynamic_cast<ImageFile*>(member);
        if (file != nullptr && file->reload(locate) != kSuccess) result = kFailure;
    }
    return result;
}

}  // namespace orvin
