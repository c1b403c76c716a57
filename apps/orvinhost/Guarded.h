// A structure handed to the effect, between guard bytes.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace orvin::stand_in {

template <typename T>
struct Guarded {
    static constexpr std::uint8_t kByte = 0x9C;
    alignas(16) std::array<std::uint8_t, 64> before;
    T value;
    std::array<std::uint8_t, 64> after;

    Guarded() {
        before.fill(kByte);
        after.fill(kByte);
        std::memset(static_cast<void*>(&value), 0, sizeof value);
    }
    bool intact() const {
        const auto whole = [](const std::array<std::uint8_t, 64>& guard) {
            return std::all_of(guard.begin(), guard.end(),
                               [](std::uint8_t byte) { return byte == kByte; });
        };
        return whole(before) && whole(after);
    }
};

}  // namespace orvin::stand_in
