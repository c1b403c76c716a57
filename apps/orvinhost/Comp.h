// The comp around the effect's layer: camera, lights and image layers, with their key frames.
//
// Comp space has its origin at the top left, y down, z away from the viewer. A camera or light at
// rest looks along +z. Matrices take points as rows on the left.
#pragma once

#include "host/abi/Suites.h"
#include "orvinhost/ImageSource.h"
#include "orvinhost/Track.h"
#include "toolkit/math/Matrix4.h"

#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace orvin::stand_in {

struct CompLayer {
    AEGP_ObjectType type = AEGP_ObjectType_AV;
    std::string name;

    // Pose. `matrix` (16 numbers, row after row) replaces all others where it is given.
    Track matrix;
    Track position;     // x, y, z
    Track interest;     // point of interest x, y, z; empty: looks along +z
    Track orientation;  // degrees about x, y, z, turned before `rotation` in the layer's chain
    Track rotation;     // degrees about x, y, z
    Track active;       // 0 or 1 over the comp's frames; empty: always on

    Track zoom;  // camera, pixels

    AEGP_LightType lightType = AEGP_LightType_POINT;
    Track intensity;        // percent
    Track color;            // red, green, blue, 0 to 1
    Track coneAngle;        // degrees, whole cone
    Track coneFeather;      // percent
    Track castsShadows;     // 0 or 1
    Track shadowDarkness;   // percent
    Track shadowDiffusion;  // pixels

    std::shared_ptr<ImageSource> image;  // AV layers
    int layerMap = 0;                    // the effect's Layer Map parameter that shows it; 0: none

    bool activeAt(double frame) const;
    Matrix4 worldFromLayer(double frame) const;
    /// Value of a stream at a comp frame; false for one that this layer hasn't.
    bool streamValue(AEGP_LayerStream stream, double frame, AEGP_StreamVal& value,
                     AEGP_StreamType& kind) const;
};

class Comp {
  public:
    /// A comp of the layer's size that holds only the effect's layer.
    Comp(int width, int height);
    /// Reads COMP.json (see docs/orvinhost.md); image files are found beside it. Throws Failure.
    Comp(const nlohmann::json& json, const std::filesystem::path& file, int layerWidth,
         int layerHeight);

    int width() const { return width_; }
    int height() const { return height_; }
    /// Comp frame at which the effect's layer has its time 0.
    double layerStart() const { return layerStart_; }
    /// Layers from the top; the effect's own is one of them.
    const std::vector<CompLayer>& layers() const { return layers_; }
    int effectLayer() const { return effectLayer_; }
    /// The topmost camera that is on at a comp frame, or -1.
    int activeCamera(double frame) const;
    std::map<std::string, std::shared_ptr<ImageSource>> images() const;

  private:
    int width_ = 0;
    int height_ = 0;
    double layerStart_ = 0.0;
    std::vector<CompLayer> layers_;
    int effectLayer_ = 0;
};

}  // namespace orvin::stand_in
