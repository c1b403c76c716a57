// The renderers that a project can ask for.
#pragma once

#include <string_view>

namespace orvin {

/// The numbers are those of RenderMethod in projects.
enum class Renderer : int {
    kOrvinex = 1,          // the software renderer
    kHiQualityOpenGl = 2,  // lit, textured surfaces
    kHiddenline = 3,       // edges, without those that surfaces hide
    kVector = 4,           // all edges
};

/// Who draws a frame of that render method: 2 to 4 are drawn with OpenGL, every other number by the
/// software renderer.
constexpr Renderer rendererFor(int renderMethod) {
    return renderMethod >= 2 && renderMethod <= 4 ? static_cast<Renderer>(renderMethod)
                                                  : Renderer::kOrvinex;
}

constexpr bool drawsWithOpenGl(Renderer renderer) {
    return renderer != Renderer::kOrvinex;
}

/// As menus show it.
constexpr std::string_view rendererName(Renderer renderer) {
    switch (renderer) {
        case Renderer::kHiQualityOpenGl:
            return "Hi-Quality OpenGL";
        case Renderer::kHiddenline:
            return "Hiddenline Renderer";
        case Renderer::kVector:
            return "Vector Renderer";
        case Renderer::kOrvinex:
            break;
    }
    return "Orvinex Renderer";
}

}  // namespace orvin
