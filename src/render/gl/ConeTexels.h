// ConeTexels: the light of a spot's cone as a picture that is projected from the light.
#pragma once

#include <vector>

namespace orvin {

/// side x side bytes, row after row: how much of the light goes in each direction. The picture is a
/// square across the light's axis whose inscribed circle is the outer angle. 255 within the inner
/// angle, 0 from the outer one on and along the border, and the light's own soft step between.
/// Angles are half angles in radians, below a right angle.
std::vector<unsigned char> coneTexels(double inner, double outer, int side);

/// The angle that the picture of a cone, and the projection of it, is made for: `outer` (radians)
/// held between 0.1 and 89 degrees, as a right angle has no picture and 0 no extent.
double coneAngle(double outer);

}  // namespace orvin
