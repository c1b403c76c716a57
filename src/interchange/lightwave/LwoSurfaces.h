// The surfaces of a LightWave object while it is read.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "interchange/ByteReader.h"
#include "interchange/ImportedGroups.h"

namespace orvin::lwo {

/// Polygons name surfaces by number, the looks come by name. Texts stay in the file's bytes, which
/// must outlive this.
class Surfaces {
  public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    struct Look {
        Rgba color{0.9F, 0.9F, 0.9F, 1.0F};
        double transparency = 0.0;
    };

    /// `file` has less than 4 GiB.
    Surfaces(Bytes file, ImportedGroups& model) : file_(file), model_(model) {}

    /// The names in a chunk of `file` get the next numbers, from 0.
    void addNames(Bytes names);

    /// The first of several looks of a name holds.
    void setLook(std::string_view name, const Look& look) { looks_.emplace(name, look); }

    /// The material of a surface; ImportedGroup::kNoMaterial for a number without a name.
    int material(std::uint32_t surface);

    /// Gives the materials their looks, at the end: surfaces may stand behind what uses them.
    void applyLooks();

  private:
    Bytes file_;
    ImportedGroups& model_;
    struct Name {
        std::uint32_t start;  // in the file
        int material;         // or kUnseen
    };
    static constexpr int kUnseen = -2;

    std::vector<Name> names_;
    std::unordered_map<std::string_view, Look> looks_;
    std::unordered_map<std::string_view, int> materials_;
};

}  // namespace orvin::lwo
