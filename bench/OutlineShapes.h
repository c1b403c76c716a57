// Outlines for the benches of the outline kernel: letters of a font, and shapes that grow.
#pragma once

#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "bench/QuietOutput.h"
#include "geometry/outline/OutlinePreparation.h"
#include "scene/SceneX.h"
#include "vector/ProfileT.h"

namespace orvin::benches {

using Loop = std::vector<Vec2>;
using Loops = std::vector<Loop>;

inline constexpr const char* kSans = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

/// The oriented loops of a text as an object of render quality has them; empty without the font.
inline PolyShape2 textShape(std::string_view text, const char* font = kSans,
                            double flatness = 0.25) {
    SceneX scene;
    ProfileT profile(scene, "text");
    profile.setFont(font, -1);
    profile.setText(text);
    std::uint32_t stamp = 0;
    PolyShape2 shape;
    if (const Mesh2* const mesh = profile.getShape(flatness, 20.0, stamp)) loadLoops(*mesh, shape);
    shape.normalizeOrientation();
    return shape;
}

inline Loops loopsOf(const PolyShape2& shape) {
    Loops loops;
    shape.collectLoops(loops);
    return loops;
}

inline PolyShape2 shapeOf(const Loops& loops) {
    PolyShape2 shape;
    shape.rebuildFromLoops(loops);
    return shape;
}

inline std::size_t pointCount(const Loops& loops) {
    std::size_t count = 0;
    for (const Loop& loop : loops)
        count += loop.size();
    return count;
}

/// A star-like loop of `count` points with a wavy rim; `turn` -1 makes it a hole.
inline Loop wavyLoop(Vec2 center, double radius, int count, int turn, std::mt19937& random) {
    const auto upTo = [&random](double most) {
        return most * static_cast<double>(random()) / 4294967296.0;
    };
    const double phase = upTo(2.0 * kPi);
    const int waves = 3 + static_cast<int>(upTo(5.0));
    Loop loop;
    for (int i = 0; i < count; ++i) {
        const double angle = turn * 2.0 * kPi * i / count;
        const double r = radius * (0.85 + 0.12 * std::sin(waves * angle + phase) + upTo(0.02));
        loop.push_back({center.x + r * std::cos(angle), center.y + r * std::sin(angle)});
    }
    return loop;
}

/// A wavy disc with `holes` wavy holes side by side, of about `points` points in all.
inline Loops holedDisc(int points, int holes) {
    std::mt19937 random(static_cast<unsigned>(points * 31 + holes));
    const double radius = 500.0;
    Loops loops;
    const int outer = holes == 0 ? points : std::max(points / 2, 12);
    loops.push_back(wavyLoop({}, radius, outer, 1, random));
    if (holes == 0) return loops;
    const int each = std::max((points - outer) / holes, 3);
    const int side = static_cast<int>(std::ceil(std::sqrt(holes)));
    const double cell = radius / side;  // the grid lies inside the disc
    for (int i = 0; i < holes; ++i) {
        const Vec2 center{(i % side + 0.5) * cell - radius / 2,
                          (i / side + 0.5) * cell - radius / 2};
        loops.push_back(wavyLoop(center, cell * 0.4, each, -1, random));
    }
    return loops;
}

}  // namespace orvin::benches
