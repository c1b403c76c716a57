// Extruded objects of Illustrator art that AIParser has read.
#pragma once

#include <string_view>
#include <vector>

#include "geometry/ObjectX.h"
#include "vector/ProfileM.h"
#include "vector/illustrator/AIParser.h"

namespace orvin {

/// Where the objects' materials come from.
enum class ArtColors {
    kOfArt,    // a material for each colour of the art, shared: the fill's, of ribbons the stroke's
    kOfStyle,  // the style's own
};

/// Makes an object of each record of `art` that has a shape, in their order; records without one,
/// and their profiles, go. An object has a style of its own, a copy of `style` (of the same scene):
/// art that was only stroked has edges and no faces there. Art in the colour of the start, which no
/// operator has set, keeps the style's material. Empty where nothing has a shape.
std::vector<ObjectX*> makeArtObjects(AIParser& art, const ObjectXStyle& style, ArtColors colors);

/// Makes one object that shows the records of `art` in turn, in their order: those without a shape
/// are blank pictures. Faces and material are those of the first record with a shape. Null, and the
/// profiles go, where nothing has one.
ObjectX* makeCycleObject(AIParser& art, const ObjectXStyle& style, ArtColors colors,
                         std::string_view name, CycleOption option);

}  // namespace orvin
