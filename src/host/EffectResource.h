// The effect's resource, by which the host knows it before it loads its code. The bytes stand
// ready-made in module/3DOrvinex.pipl for the resource compiler; this is how they come about.
#pragma once

#include <cstdint>
#include <vector>

namespace orvin {

/// The resource as the host reads it; built from the constants of EffectIdentity.h.
std::vector<std::uint8_t> effectResource();

}  // namespace orvin
