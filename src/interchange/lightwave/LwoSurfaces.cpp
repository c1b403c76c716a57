#include "interchange/lightwave/LwoSurfaces.h"

#include <utility>

namespace orvin::lwo {

void Surfaces::addNames(ByteReader names) {
    std::size_t count = 0;
    for (ByteReader in = names; !in.atEnd(); in.skipText())
        ++count;
    if (names_.empty()) names_.reserve(count);
    for (ByteReader in = names; !in.atEnd(); in.skipText())
        names_.push_back(static_cast<std::uint32_t>(in.position()));
}

int Surfaces::material(std::uint32_t surface) {
    if (surface >= names_.size()) return ImportedGroup::kNoMaterial;
    ByteReader in(file_);
    in.take(names_[surface]);
    std::string name = in.text();
    const auto next = static_cast<int>(model_.materials.size());
    const auto [found, isNew] = used_.emplace(name, Used{next});
    if (isNew) model_.materials.emplace_back().name = std::move(name);
    return found->second.material;
}

void Surfaces::setLook(const std::string& name, const Look& look) {
    const auto used = used_.find(name);
    if (used == used_.end() || std::exchange(used->second.hasLook, true)) return;
    ImportedMaterial& shown = model_.materials[static_cast<std::size_t>(used->second.material)];
    shown.color = look.color;
    shown.transparency = look.transparency;
}

}  // namespace orvin::lwo
