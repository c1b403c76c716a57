// The surfaces of a LightWave object while it is read.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "interchange/ByteReader.h"
#include "interchange/ImportedGroups.h"

namespace orvin::lwo {

/// Polygons name surfaces by number, the looks come by name. Names stay in the file until they are
/// used.
class Surfaces {
  public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    struct Look {
        Rgba color{0.9F, 0.9F, 0.9F, 1.0F};
        double transparency = 0.0;
    };

    /// `file` has less than 4 GiB and must outlive this.
    Surfaces(ModelInput& file, ImportedGroups& model) : file_(file), model_(model) {}

    /// The names in a chunk of the file get the next numbers, from 0.
    void addNames(ByteReader names);

    /// The material of a surface; ImportedGroup::kNoMaterial for a number without a name.
    int material(std::uint32_t surface);

    /// Gives materials their looks; the first of several of a name holds. Surfaces may stand behind
    /// what uses them: this is for the end.
    void setLook(const std::string& name, const Look& look);

  private:
    ModelInput& file_;
    ImportedGroups& model_;
    std::vector<std::uint32_t> names_;  // where they start in the file
    struct Used {
        int material = 0;
        bool hasLook = false;
    };
    std::unordered_map<std::string, Used> used_;  // by name
};

}  // namespace orvin::lwo
