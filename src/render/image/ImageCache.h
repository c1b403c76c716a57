// The texture images in use, by path. Process-wide, and only for the thread that renders: a pointer
// that findImage() gave stays valid until its image is released or its layer list changes.
//
// Two lists: images loaded from files, and layer images, which the host's layers lend to a frame
// under names that begin with '|' ("|ExtMap1" to "|ExtMap10").
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "render/image/SummedImage.h"

namespace orvin {

/// Name of the layer image that stands for layers without a picture of their own.
inline constexpr std::string_view kPlaceholderLayer = "|ExtMap0";

/// The image of `path`, or null. A path not met before is loaded and kept; one that can't be loaded
/// is remembered as missing, so that a shader may ask for every sample. Paths are compared byte for
/// byte. A path that begins with '|' is a layer image: the one of that name, else the list's first
/// (the placeholder, where there is one), else null; it is never looked for on the disk.
const SummedImage* findImage(std::string_view path);

/// Forgets one path; the next look-up loads it again. Layer images are not touched.
void releaseImage(std::string_view path);
void releaseAllImages();

/// Adds a layer image under `name` in the place of one that had it; null only takes that one out.
/// The placeholder always goes to the front of the list.
void addLayerImage(std::string_view name, std::unique_ptr<SummedImage> image);

/// Drops the layer images of a frame; the placeholder stays.
void clearLayerImages();

/// Changes with every load, release and change of the layer list: while it is the same, a pointer
/// (or null) from findImage() still holds.
std::uint64_t imageCacheRevision();

}  // namespace orvin
