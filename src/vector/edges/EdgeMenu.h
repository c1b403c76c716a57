// The menu of edges: names as artists see them, in eight submenus.
#pragma once

#include <span>
#include <string_view>

namespace orvin {

/// The name that menus show for an edge of the library. It is the edge's own but for 13; a name
/// that is no edge's comes back as it is.
std::string_view shownEdgeName(std::string_view libraryName);

struct EdgeCategory {
    std::string_view name;                    // of the submenu
    std::span<const std::string_view> edges;  // names in the library, in menu order
};

/// The eight submenus in menu order; each edge of the library stands in one.
std::span<const EdgeCategory> edgeCategories();

/// The submenu that an edge of the library stands in, 0 to 7; -1 for a name that is no edge's.
int edgeCategory(std::string_view libraryName);

}  // namespace orvin
