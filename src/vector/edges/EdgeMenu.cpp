#include "vector/edges/EdgeMenu.h"

#include <algorithm>
#include <iterator>

namespace orvin {

namespace {

struct ShownName {
    std::string_view library;
    std::string_view shown;
};
constexpr ShownName kShownNames[] = {
    {"Bead, Double Edge", "Half Pipe, Double"},
    {"Bead, Medium", "Half Pipe, Medium"},
    {"Bead, Small", "Half Pipe, Small"},
    {"Circle, Shallow", "Shallow Half Pipe"},
    {"Circle, Shallow Flanged", "Shallow Half Pipe, Flanged"},
    {"Circle, Shallow Scooped", "Shallow Half Pipe, Scooped"},
    {"Piping, Small", "Pipe, Small"},
    {"Piping, Large", "Pipe, Large"},
    {"Semicircle", "Half Pipe"},
    {"Semicircle, 4 Stripe", "Half Pipe, 3 Stripe"},
    {"Semicircle, 6 Stripe", "Half Pipe, 5 Stripe"},
    {"Semicircle, Grooved", "Half Pipe, Grooved"},
    {"Semicircle, Scooped", "Half Pipe, Scooped"},
};

constexpr std::string_view kBevels[] = {"Basic, Flat Sides",   "Basic, Highlight Edges",
                                        "Bevel, Small Front",  "Bevel, Small",
                                        "Bevel, Medium Front", "Bevel, Medium",
                                        "Bevel, Large Front",  "Bevel, Large",
                                        "Bevel, Flat",         "Bevel, Flatter",
                                        "Bevel with Point",    "Bevel with In-Point",
                                        "Bevel with Scoop",    "Round Edges, Small",
                                        "Round Edges, Large",  "Round Edges + 3 Grooves",
                                        "Round & Grooved",     "Round, Double",
                                        "Round, Bumper"};
constexpr std::string_view kInsetFace[] = {"Bevel, Power",
                                           "Bevel, Power Grooves",
                                           "Circle, Rim",
                                           "Halo",
                                           "Heart",
                                           "Heart, Clipped",
                                           "Outline",
                                           "Outline, Box",
                                           "Outline, Pressed Box",
                                           "Outline, Rounded Box",
                                           "Round, Bubble Rims",
                                           "Round, Butterfly Rims",
                                           "Round, Mushroom Cap",
                                           "Star, Overhang",
                                           "Steps",
                                           "Wacko",
                                           "Wavey"};
constexpr std::string_view kPipesAndHalfPipes[] = {"Bead, Double Edge",
                                                   "Bead, Small",
                                                   "Bead, Medium",
                                                   "Semicircle",
                                                   "Semicircle, 4 Stripe",
                                                   "Semicircle, 6 Stripe",
                                                   "Semicircle, Grooved",
                                                   "Semicircle, Scooped",
                                                   "Circle, Shallow",
                                                   "Circle, Shallow Flanged",
                                                   "Circle, Shallow Scooped",
                                                   "Piping, Small",
                                                   "Piping, Large",
                                                   "Pipe, Full"};
constexpr std::string_view kSharp[] = {"Pleats, 2",         "Pleats, 3",
                                       "Pleats, 4",         "Pleats, 10",
                                       "Point, Small",      "Point, Medium",
                                       "Point, Wide",       "Point, Full",
                                       "Scallops, 2 Point", "Scallops, 3 Point",
                                       "Star, Overhanging", "Star, Shallow",
                                       "Star, Sharp",       "Threads"};
constexpr std::string_view kStacks[] = {
    "Fins, Thin",  "Fins, Thin Stepped",  "Fins, Medium",   "Fins, Medium Stepped",
    "Fins, Large", "Fins, Large Stepped", "Tiers, Beveled", "Tiers, Rounded"};
constexpr std::string_view kWoodwork[] = {"Grooves, Beveled",  "Grooves, Small", "Grooves, Large",
                                          "Grooves, 3 Inlaid", "Round, Half",    "Round, Quarter",
                                          "Scoop, Full",       "Scoop, Half",    "Tongue, Beveled",
                                          "Tongue, Small",     "Tongue, Large"};
constexpr std::string_view kSpecialPurpose[] = {
    "Bowl, Crescent",    "Bowl, L",           "Bowl, T",    "Bulb, Holiday", "Bulb, Light",
    "Constructionist 1", "Constructionist 2", "Corrugated", "Deco 1",        "Deco 2",
    "Flare, Curved",     "Flare, Straight",   "Shrinkwrap", "Thrashed",      "VexCave",
    "VexCave, Pouting"};
constexpr std::string_view kChiseled[] = {"Chiseled",
                                          "Chiseled, Beveled",
                                          "Chiseled, Double",
                                          "Chiseled, Small Lip",
                                          "Chiseled, Medium Lip",
                                          "Chiseled, Large Lip",
                                          "Chiseled, Rounded",
                                          "Chiseled, Steps"};

constexpr EdgeCategory kCategories[] = {
    {"Bevels", kBevels},
    {"Inset Face", kInsetFace},
    {"Pipes and Half Pipes", kPipesAndHalfPipes},
    {"Sharp", kSharp},
    {"Stacks", kStacks},
    {"Woodwork", kWoodwork},
    {"Special Purpose", kSpecialPurpose},
    {"Chiseled", kChiseled},
};

}  // namespace

std::string_view shownEdgeName(std::string_view libraryName) {
    const auto* const found =
        std::find_if(std::begin(kShownNames), std::end(kShownNames),
                     [&](const ShownName& entry) { return entry.library == libraryName; });
    return found != std::end(kShownNames) ? found->shown : libraryName;
}

std::span<const EdgeCategory> edgeCategories() {
    return kCategories;
}

int edgeCategory(std::string_view libraryName) {
    for (std::size_t i = 0; i < std::size(kCategories); ++i) {
        const auto edges = kCategories[i].edges;
        if (std::find(edges.begin(), edges.end(), libraryName) != edges.end())
            return static_cast<int>(i);
    }
    return -1;
}

}  // namespace orvin
