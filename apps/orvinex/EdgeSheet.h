// Pictures of edges: the section of an edge beside a letter that has it, cut out and rendered.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "common/Png.h"

namespace orvin {
class Profile;
}

namespace orvin::orvinex {

struct SheetEdge {
    Profile* edge = nullptr;
    std::string caption;
    bool makesSolids = true;  // else its letter is left out
};

struct SheetLayout {
    int columns = 6;
    int letterSide = 200;  // pixels; all else follows
};

/// One cell per edge, row by row, in the order given. `progress` hears the part done. Throws
/// Failure where a sheet would be larger than a picture can be.
apps::Picture drawEdgeSheet(std::span<const SheetEdge> edges, const SheetLayout& layout,
                            const std::function<void(double)>& progress);

}  // namespace orvin::orvinex
