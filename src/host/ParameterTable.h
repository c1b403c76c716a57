// The effect's parameters as data: what PF_Cmd_PARAMS_SETUP adds, in its order, and the indices by
// which everything else finds them. The index in the list is the index in the host's `params`
// array.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace orvin {

/// Indices in `params` on a host with groups and comp links.
namespace param {
inline constexpr int kInput = 0;
inline constexpr int kScenePreview = 1;
inline constexpr int kUseCompCamera = 2;
inline constexpr int kUseCompLights = 3;
inline constexpr int kCameraType = 5;
inline constexpr int kCameraEye = 6;     // x, y, z
inline constexpr int kCameraTarget = 9;  // x, y, z
inline constexpr int kCameraDistance = 12;
inline constexpr int kCameraTumbleLeft = 13;
inline constexpr int kCameraTumbleUp = 14;
inline constexpr int kCameraRoll = 15;
inline constexpr int kCameraOrthoSize = 16;
inline constexpr int kCameraFirst = 5;
inline constexpr int kCameraLast = 16;
inline constexpr int kLightsFirst = 19;
inline constexpr int kLightsLast = 36;
inline constexpr int kSetsFirst = 40;
inline constexpr int kSetsLast = 109;
inline constexpr int kSetStride = 9;
inline constexpr int kCompositeOnOriginal = 124;
inline constexpr int kLightCount = 3;
inline constexpr int kLayerMapCount = 10;

/// Colour of light 1 to 3; intensity, direction and elevation follow.
constexpr int lightBase(int light) {
    return 20 + 6 * (light - 1);
}
/// X position of Set k from 1 on; the other positions, rotations and the depth scale follow.
constexpr int setBase(int set) {
    return kSetsFirst + kSetStride * (set - 1);
}
/// The Set that an index from kSetsFirst to kSetsLast speaks of. The group's end and the next
/// group's start, behind the depth scale, count as the next Set.
constexpr int setOf(int index) {
    return 1 + (index - kSetsFirst + 2) / kSetStride;
}
/// Layer Map n from 1 to 10.
constexpr int layerMap(int number) {
    return 112 + number;
}
}  // namespace param

enum class ParameterKind {
    kPanel,
    kCheckbox,
    kGroupStart,
    kGroupEnd,
    kPopup,
    kSlider,
    kColor,
    kLayer
};

struct ParameterEntry {
    ParameterKind kind = ParameterKind::kSlider;
    int id = 0;
    std::string name;       // a checkbox has none, its text is `text`
    const char* text = "";  // checkbox label, or popup choices divided by bars
    double initial = 0.0;   // slider value, popup choice
    double validMin = 0.0;
    double validMax = 0.0;
    double sliderMin = 0.0;
    double sliderMax = 0.0;
    std::array<std::uint8_t, 3> color{};  // red, green, blue
    bool animated = true;                 // false for what has one value for the whole layer
};

/// Names by which the host's generation is told.
struct HostGeneration {
    bool hasGroups = true;     // major version 12 or later
    bool hasCompLinks = true;  // 12.10 or later: the two Use Comp boxes
};

/// Sets of a scene, the neutral Set 0 included, on such a host.
constexpr int setCountFor(HostGeneration host) {
    return host.hasGroups ? 9 : 4;
}

/// Everything that is added, in order; entry i stands at index i + 1, behind the input layer.
std::vector<ParameterEntry> parameterTable(HostGeneration host);

}  // namespace orvin
