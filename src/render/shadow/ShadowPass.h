// The depth pass of a shadow map: the scene as a light's camera sees it.
//
// Every enabled object casts, glass too. DIRECTIONAL maps cover the box of all objects in the
// camera's axes; SPOT and POINT maps a square pyramid of twice the light's outer angle about the
// light's axis, so a POINT light with a map lights no more than that pyramid.
#pragma once

#include <cstdint>
#include <memory>

#include "render/shadow/ShadowMap.h"
#include "scene/RenderParams.h"

namespace orvin {

class LightX;
class SceneX;

/// Largest map, in texels along a side.
inline constexpr int kMaxShadowResolution = 16384;

/// The map of a light that is posed for this frame: params.shadowQuality texels a side, held in 1
/// to kMaxShadowResolution. Null where the progress callback, polled once a row of each tile, stops
/// it; and for a light that can have none: an AMBIENT one, or a scene of no objects or with
/// coordinates that are no finite numbers.
///
/// `memoryBudget` in bytes, as for ImageBuffer; 0: what the machine has free. Throws std::bad_alloc
/// where memory is short, eBaseError 101 where a temporary file fails.
std::unique_ptr<ShadowMap> makeShadowMap(SceneX& scene, LightX& light, const RenderParams& params,
                                         std::uint64_t memoryBudget = 0);

}  // namespace orvin
