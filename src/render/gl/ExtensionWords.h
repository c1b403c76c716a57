// ExtensionWords: looks for a name in a list as OpenGL gives it.
#pragma once

#include <string_view>

namespace orvin {

/// True where `name` stands in `list` between blanks or ends: "WGL_ARB_pbuffer" isn't in
/// "WGL_ARB_pbuffer_2". An empty name is in no list.
constexpr bool hasExtension(std::string_view list, std::string_view name) {
    if (name.empty()) return false;
    for (std::size_t at = list.find(name); at != std::string_view::npos;
         at = list.find(name, at + 1)) {
        const std::size_t behind = at + name.size();
        const bool starts = at == 0 || list[at - 1] == ' ';
        if (starts && (behind == list.size() || list[behind] == ' ')) return true;
    }
    return false;
}

}  // namespace orvin
