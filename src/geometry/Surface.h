// Surface: what geometry needs to know about a material. The materials themselves live above.
#pragma once

#include "scene/SceneMember.h"

namespace orvin {

class Surface : public SceneMember {
  public:
    using SceneMember::SceneMember;

    /// True where something behind the surface may shine through.
    virtual bool isTransparent() const = 0;
};

}  // namespace orvin
