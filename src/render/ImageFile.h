// ImageFile: a scene member that names a picture on the disk and carries its thumbnail. The pixels
// are in the image cache, under the path, from the first lookup until they are released.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "scene/SceneMember.h"
#include "scene/Thumbnail.h"
#include "toolkit/twPicture.h"

namespace orvin {

/// Asked for a picture that isn't where it was: the path where it is, or nothing.
using ImageLocator = std::function<std::optional<std::string>(const std::string& path)>;

class ImageFile final : public SceneMember {
  public:
    static constexpr std::size_t kPathLimit = 260;  // bytes of a path that are kept

    ImageFile(SceneX& scene, std::string_view name);
    ImageFile(SceneX& scene, const ImageFile& source, std::string_view name);

    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "ImageFile"; }
    Result writeBody(SceneStream& stream) override;

    const std::string& path() const { return path_; }
    void setPath(std::string_view path);

    /// Null for none.
    const twPicture* thumbnail() const { return thumbnail_.get(); }
    /// A picture without width, height or pixels counts as none.
    void setThumbnail(std::unique_ptr<twPicture> picture);

    /// Drops the cached pixels and finds the file: where the path says, else where `locate` says
    /// (an empty function finds nothing). The path found is kept and a thumbnail made of what it
    /// holds; a file in a format that can't be read has none. -1 where nothing was found; path and
    /// thumbnail then stay. A layer of the composition and an empty path are left alone.
    Result reload(const ImageLocator& locate);

    /// Drops the cached pixels; the next lookup loads them again.
    void releaseImage();

  private:
    static Result readSize(SceneStream& stream, Persistent& self);
    static Result readPixels(SceneStream& stream, Persistent& self);
    static Result readBinaryPixels(SceneStream& stream, Persistent& self);
    Result adoptPixels(SceneStream& stream, ThumbnailForm form);

    std::string path_;
    std::unique_ptr<twPicture> thumbnail_;
    ThumbnailSize incoming_;  // while reading, until the pixels come
};

/// Reloads every image file of the scene. -1 where any wasn't found; the others are done all the
/// same.
Result reloadImages(SceneX& scene, const ImageLocator& locate);

}  // namespace orvin
