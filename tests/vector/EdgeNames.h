// The names of the library's edges in order, written down apart from it: projects of all times
// count on them.
#pragma once

namespace orvin::test {

// clang-format off
inline constexpr const char* kEdgeNames[] = {
    "Basic, Flat Sides", "Basic, Highlight Edges", "Bead, Double Edge", "Bead, Medium",
    "Bead, Small", "Bevel, Small Front", "Bevel, Small", "Bevel, Medium Front", "Bevel, Medium",
    "Bevel, Large Front", "Bevel, Large", "Bevel, Power", "Bevel, Power Grooves", "Bevel, Flat",
    "Bevel, Flatter", "Bevel with In-Point", "Bevel with Point", "Bevel with Scoop",
    "Bowl, Crescent", "Bowl, L", "Bowl, T", "Bulb, Holiday", "Bulb, Light", "Chiseled",
    "Chiseled, Beveled", "Chiseled, Double", "Chiseled, Small Lip", "Chiseled, Medium Lip",
    "Chiseled, Large Lip", "Chiseled, Rounded", "Chiseled, Steps", "Circle, Rim", "Circle, Shallow",
    "Circle, Shallow Flanged", "Circle, Shallow Scooped", "Constructionist 1", "Constructionist 2",
    "Corrugated", "Deco 1", "Deco 2", "Fins, Thin", "Fins, Thin Stepped", "Fins, Medium",
    "Fins, Medium Stepped", "Fins, Large", "Fins, Large Stepped", "Flare, Curved",
    "Flare, Straight", "Grooves, Beveled", "Grooves, Small", "Grooves, Large", "Grooves, 3 Inlaid",
    "Halo", "Heart", "Heart, Clipped", "Outline", "Outline, Box", "Outline, Pressed Box",
    "Outline, Rounded Box", "Pipe, Full", "Piping, Small", "Piping, Large", "Pleats, 2",
    "Pleats, 3", "Pleats, 4", "Pleats, 10", "Point, Small", "Point, Medium", "Point, Wide",
    "Point, Full", "Round & Grooved", "Round Edges, Small", "Round Edges, Large",
    "Round Edges + 3 Grooves", "Round, Bubble Rims", "Round, Bumper", "Round, Butterfly Rims",
    "Round, Double", "Round, Half", "Round, Mushroom Cap", "Round, Quarter", "Scallops, 2 Point",
    "Scallops, 3 Point", "Scoop, Full", "Scoop, Half", "Semicircle", "Semicircle, 4 Stripe",
    "Semicircle, 6 Stripe", "Semicircle, Grooved", "Semicircle, Scooped", "Shrinkwrap",
    "Star, Overhang", "Star, Overhanging", "Star, Shallow", "Star, Sharp", "Steps", "Thrashed",
    "Threads", "Tiers, Beveled", "Tiers, Rounded", "Tongue, Beveled", "Tongue, Small",
    "Tongue, Large", "VexCave", "VexCave, Pouting", "Wacko", "Wavey",
};
// clang-format on

}  // namespace orvin::test
