#include "interchange/lightwave/LwoSurfaces.h"

#include <string>

namespace orvin::lwo {

void Surfaces::addNames(Bytes names) {
    const auto start = static_cast<std::size_t>(names.data() - file_.data());
    std::size_t count = 0;
    for (ByteReader in(names); !in.atEnd(); in.text())
        ++count;
    if (names_.empty()) names_.reserve(count);
    for (ByteReader in(names); !in.atEnd(); in.text())
        names_.push_back({static_cast<std::uint32_t>(start + names.size() - in.rest()), kUnseen});
}

int Surfaces::material(std::uint32_t surface) {
    if (surface >= names_.size()) return ImportedGroup::kNoMaterial;
    Name& known = names_[surface];
    if (known.material != kUnseen) return known.material;
    const std::string_view name = ByteReader(file_.subspan(known.start)).text();
    const auto next = static_cast<int>(model_.materials.size());
    const auto [found, isNew] = materials_.emplace(name, next);
    if (isNew) model_.materials.emplace_back().name = name;
    return known.material = found->second;
}

void Surfaces::applyLooks() {
    for (const auto& [name, material] : materials_) {
        const auto look = looks_.find(name);
        if (look == looks_.end()) continue;
        ImportedMaterial& shown = model_.materials[static_cast<std::size_t>(material)];
        shown.color = look->second.color;
        shown.transparency = look->second.transparency;
    }
}

}  // namespace orvin::lwo
