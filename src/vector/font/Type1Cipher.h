// The cipher of Type 1 fonts, as "Adobe Type 1 Font Format" (1990), chapter 7, describes it.
#pragma once

#include <cstdint>

namespace orvin {

class Type1Cipher {
  public:
    static constexpr std::uint16_t kEexecKey = 55665;
    static constexpr std::uint16_t kCharstringKey = 4330;

    explicit Type1Cipher(std::uint16_t key) : state_(key) {}

    std::uint8_t decrypt(std::uint8_t cipher) {
        const auto plain = static_cast<std::uint8_t>(cipher ^ (state_ >> 8U));
        state_ = static_cast<std::uint16_t>((cipher + std::uint32_t{state_}) * 52845U + 22719U);
        return plain;
    }

  private:
    std::uint16_t state_;
};

}  // namespace orvin
