// The member classes of this folder.
#pragma once

namespace orvin {

/// Makes ObjectP known to scenes. Call it once at start-up; again does no harm.
void registerGeometryClasses();

/// The same for ObjectX and ObjectXStyle.
void registerExtrusionClasses();

}  // namespace orvin
