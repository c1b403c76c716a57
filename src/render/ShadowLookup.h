// ShadowLookup: what a light asks of its shadow map. The map is built for one frame and owned by
// the light for as long.
#pragma once

#include "toolkit/math/Matrix4.h"

namespace orvin {

/// How world points fall on the map.
struct ShadowFrame {
    Matrix4 cameraFromWorld;  // of the light's camera, which looks along its negative z
    int resolution = 0;       // texels along each side
    double focal = 1.0;       // map widths per unit at depth 1; not for directional lights
    // The box of a directional light's map in its camera's space.
    double left = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    double top = 0.0;
};

class ShadowLookup {
  public:
    virtual ~ShadowLookup() = default;

    const ShadowFrame& frame() const { return frame_; }

    /// Filtered light at a texel inside the map for a surface at `depth` in front of the light's
    /// camera: 1 fully lit, 0 fully shadowed.
    virtual double filtered(int ix, int iy, double depth) const = 0;

  protected:
    explicit ShadowLookup(const ShadowFrame& frame) : frame_(frame) {}

  private:
    ShadowFrame frame_;
};

}  // namespace orvin
