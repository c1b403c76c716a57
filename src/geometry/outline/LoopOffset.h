// Moves a closed loop sideways and keeps one output point per input point, so that rings of a sweep
// can be stitched index to index.
//
// Where the offset runs into the loop itself nothing is clipped away: runs of points that came too
// near to the loop collapse into one, and what is stitched to them becomes a fan. Only positive
// offsets are repaired; a negative one keeps its plain mitres and may turn inside out.
//
// Degenerate input: points at one place share their corner's mitre; a loop that is one place all
// over stays there; coordinates that aren't finite give points that aren't.
#pragma once

#include <span>
#include <vector>

#include "toolkit/math/Vec.h"

namespace orvin {

enum class OffsetRepair : int {
    kNone = 0,    // plain mitres
    kAlways = 1,  // every run collapses
    kFans = 2,    // runs collapse unless they reach over more than five edges of the loop
};

/// The loop moved by `distance` to the right of its direction: a counter-clockwise loop grows, and
/// so does the solid around a clockwise hole. As many points as `loop` has. A run that stays
/// unrepaired is told on standard output.
std::vector<Vec2> offsetLoop(std::span<const Vec2> loop, double distance, OffsetRepair repair);

/// The same, with very short edges at corners treated alike for both signs of `distance`.
std::vector<Vec2> offsetLoopSigned(std::span<const Vec2> loop, double distance,
                                   OffsetRepair repair);

}  // namespace orvin
