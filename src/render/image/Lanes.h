// Four values side by side, one per channel: what the filter's inner steps are made of. GNU
// vectors, which every compiler of this project turns into the processor's own.
#pragma once

#include <cstdint>
#include <cstring>

namespace orvin {

using Lanes = std::uint32_t __attribute__((vector_size(16)));  // arithmetic wraps around

/// Four doubles, as two halves of what a baseline processor holds in a register.
struct RealLanes {
    using Half = double __attribute__((vector_size(16)));

    Half low;
    Half high;

    friend RealLanes operator+(RealLanes a, RealLanes b) {
        return {a.low + b.low, a.high + b.high};
    }
    friend RealLanes operator+(RealLanes a, double b) { return {a.low + b, a.high + b}; }
    friend RealLanes operator-(RealLanes a, RealLanes b) {
        return {a.low - b.low, a.high - b.high};
    }
    friend RealLanes operator*(RealLanes a, double b) { return {a.low * b, a.high * b}; }
};

inline Lanes loadLanes(const std::uint32_t* values) {
    Lanes lanes;
    std::memcpy(&lanes, values, sizeof lanes);
    return lanes;
}

/// Each value as a double, exact: it becomes the low half of 2^52 + value.
inline RealLanes toReal(Lanes values) {
    constexpr Lanes kExponent = {0x43300000U, 0x43300000U, 0x43300000U, 0x43300000U};
    constexpr double kTwoTo52 = 4503599627370496.0;
    const Lanes low = __builtin_shufflevector(values, kExponent, 0, 4, 1, 5);
    const Lanes high = __builtin_shufflevector(values, kExponent, 2, 6, 3, 7);
    return {reinterpret_cast<RealLanes::Half>(low) - kTwoTo52,
            reinterpret_cast<RealLanes::Half>(high) - kTwoTo52};
}

/// Towards zero; each value within the range of an int.
inline RealLanes truncated(RealLanes values) {
    using Signed = std::int32_t __attribute__((vector_size(8)));
    return {__builtin_convertvector(__builtin_convertvector(values.low, Signed), RealLanes::Half),
            __builtin_convertvector(__builtin_convertvector(values.high, Signed), RealLanes::Half)};
}

}  // namespace orvin
