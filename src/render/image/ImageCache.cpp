#include "render/image/ImageCache.h"

#include <utility>
#include <vector>

#include "render/image/ImageLoad.h"

namespace orvin {

namespace {

struct CachedImage {
    std::string path;
    std::unique_ptr<SummedImage> image;  // null: can't be loaded
};

struct Cache {
    std::vector<CachedImage> files;
    std::vector<CachedImage> layers;  // never null images
    std::uint64_t revision = 1;
};

Cache& cache() {
    static Cache instance;
    return instance;
}

std::vector<CachedImage>::iterator find(std::vector<CachedImage>& list, std::string_view path) {
    auto entry = list.begin();
    while (entry != list.end() && entry->path != path)
        ++entry;
    return entry;
}

std::unique_ptr<SummedImage> load(const std::string& path) {
    ImageBuffer image;
    if (loadImage(path, image) != kSuccess) return nullptr;
    return std::make_unique<SummedImage>(image);
}

}  // namespace

const SummedImage* findImage(std::string_view path) {
    const bool isLayer = path.starts_with('|');
    auto& list = isLayer ? cache().layers : cache().files;
    const auto entry = find(list, path);
    if (entry != list.end()) return entry->image.get();
    if (isLayer) return list.empty() ? nullptr : list.front().image.get();
    if (path.empty()) return nullptr;

    std::string name(path);
    auto image = load(name);
    list.push_back({std::move(name), std::move(image)});
    ++cache().revision;
    return list.back().image.get();
}

void releaseImage(std::string_view path) {
    auto& list = cache().files;
    const auto entry = find(list, path);
    if (entry == list.end()) return;
    list.erase(entry);
    ++cache().revision;
}

void releaseAllImages() {
    cache().files.clear();
    ++cache().revision;
}

void addLayerImage(std::string_view name, std::unique_ptr<SummedImage> image) {
    auto& list = cache().layers;
    const auto entry = find(list, name);
    if (image) image->setPath(std::string(name));
    if (entry == list.end()) {
        if (!image) return;
        const auto place = name == kPlaceholderLayer ? list.begin() : list.end();
        list.insert(place, CachedImage{std::string(name), std::move(image)});
    } else if (image) {
        entry->image = std::move(image);
    } else {
        list.erase(entry);
    }
    ++cache().revision;
}

void clearLayerImages() {
    std::erase_if(cache().layers,
                  [](const auto& entry) { return entry.path != kPlaceholderLayer; });
    ++cache().revision;
}

std::uint64_t imageCacheRevision() {
    return cache().revision;
}

}  // namespace orvin
