// Furniture: what a viewer shows beside the scene's surfaces, as lines and words in world space.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "render/gl/viewer/GuideLabels.h"
#include "render/gl/viewer/LightMarks.h"
#include "toolkit/math/Box3.h"

namespace orvin {

class CameraX;
class SceneX;

using LineColor = std::array<float, 3>;

struct FurnitureOptions {
    bool groundPlane = true;
    double groundLevel = 0.0;  // y, world units
    bool guides = true;        // the axis through the origin and, with a size, the frame at z = 0
    double frameWidth = 0.0;   // of the rendered frame, in the layer's pixels; 0 for none
    double frameHeight = 0.0;
    bool lights = true;
    bool cameras = true;  // all but the one that looks and those of thumbnails
    bool selection = true;
    bool names = true;  // of lights, cameras and what is selected
};

struct FurnitureLines {
    LineColor color{};
    bool isStippled = false;
    bool isOnTop = false;      // nothing of the scene hides it
    std::vector<Vec3> points;  // two for each line
};

struct Furniture {
    struct Text {
        std::string text;
        Vec3 place;
        LineColor color{};
        bool besideIcon = false;  // that much further to the right
    };
    struct Label {
        GuideLabel label{};
        Vec3 place;
    };

    std::vector<FurnitureLines> lines;
    std::vector<Text> texts;
    std::vector<Label> labels;
    std::vector<LightMark> lights;
    Box3 bounds;  // of all of it
};

/// Sizes follow what the scene shows (furnitureBounds()). `viewer` is the camera that looks.
Furniture makeFurniture(SceneX& scene, const CameraX& viewer, const FurnitureOptions& options,
                        int quality);

}  // namespace orvin
