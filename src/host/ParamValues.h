// Values in the host's parameter structures, as plain numbers.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

#include "host/FrameServices.h"
#include "host/ParameterTable.h"
#include "render/CameraX.h"
#include "render/Rgba.h"
#include "toolkit/math/Vec.h"

namespace orvin {

/// 16.16 fixed point; what doesn't fit is held at the ends.
inline PF_Fixed toFixed(double value) {
    constexpr double kLow = std::numeric_limits<PF_Fixed>::min();
    constexpr double kHigh = std::numeric_limits<PF_Fixed>::max();
    if (!(value == value)) return 0;
    return static_cast<PF_Fixed>(std::clamp(std::trunc(value * 65536.0), kLow, kHigh));
}
inline double fromFixed(PF_Fixed value) {
    return value * 1.52587890625e-05;
}

inline double sliderValue(ParamArray params, int index) {
    return fromFixed(params[index]->u.fd.value);
}
inline Vec3 sliderVector(ParamArray params, int first) {
    return {sliderValue(params, first), sliderValue(params, first + 1),
            sliderValue(params, first + 2)};
}
inline bool checkboxValue(ParamArray params, int index) {
    return params[index]->u.bd.value != 0;
}

/// A light's colour from the host's bytes: alpha is 0 there.
inline Rgba lightColor(const PF_Pixel& bytes) {
    constexpr float kPerByte = 1.0F / 255.0F;
    return {bytes.red * kPerByte, bytes.green * kPerByte, bytes.blue * kPerByte, 0.0F};
}
inline std::array<std::uint8_t, 3> colorBytes(const Rgba& color) {
    std::array<std::uint8_t, 3> bytes{};
    for (std::size_t i = 0; i < 3; ++i)
        bytes[i] = static_cast<std::uint8_t>(
            std::clamp(static_cast<double>(color[i]) * 255.0 + 0.5, 0.0, 255.0));
    return bytes;
}

/// The camera mode of a popup choice; nothing outside 1 to 3.
inline std::optional<CameraMode> cameraModeOf(int choice) {
    switch (choice) {
        case 1:
            return CameraMode::kOrbit;
        case 2:
            return CameraMode::kLookAt;
        case 3:
            return CameraMode::kHandHeld;
        default:
            return std::nullopt;
    }
}
/// Its inverse. A camera that its matrix drives has no choice of its own and shows as the first.
inline int popupChoiceOf(CameraMode mode) {
    switch (mode) {
        case CameraMode::kLookAt:
            return 2;
        case CameraMode::kHandHeld:
            return 3;
        default:
            return 1;
    }
}

}  // namespace orvin
