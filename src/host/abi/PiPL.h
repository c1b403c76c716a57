// The resource by which the host knows an effect before it loads its code: raw binary,
// little-endian.
//
// Header: 16-bit 1, 32-bit version 0, 32-bit number of properties. Then, each: 32-bit vendor,
// 32-bit key, 32-bit id 0, 32-bit length, data padded with zeros to a multiple of four. The length
// of a string counts its padding; that of the info flags is 2 though four bytes are stored.
#pragma once

#include <cstdint>

namespace orvin {

inline constexpr int kPiPLResourceId = 16000;
inline constexpr std::uint32_t kPiPLVendor = 0x3842494D;  // '8BIM'

inline constexpr std::uint32_t kPiPLKindProperty = 0x6B696E64;           // 'kind'
inline constexpr std::uint32_t kPiPLNameProperty = 0x6E616D65;           // 'name'
inline constexpr std::uint32_t kPiPLCategoryProperty = 0x63617467;       // 'catg'
inline constexpr std::uint32_t kPiPLCodeWin64X86 = 0x38363634;           // '8664'
inline constexpr std::uint32_t kPiPLVersionProperty = 0x65505652;        // 'ePVR'
inline constexpr std::uint32_t kPiPLSpecVersionProperty = 0x65535652;    // 'eSVR'
inline constexpr std::uint32_t kPiPLEffectVersionProperty = 0x65564552;  // 'eVER'
inline constexpr std::uint32_t kPiPLInfoFlagsProperty = 0x65494E46;      // 'eINF'
inline constexpr std::uint32_t kPiPLOutFlagsProperty = 0x65474C4F;       // 'eGLO'
inline constexpr std::uint32_t kPiPLOutFlags2Property = 0x65474C32;      // 'eGL2'
inline constexpr std::uint32_t kPiPLMatchNameProperty = 0x654D4E41;      // 'eMNA'
inline constexpr std::uint32_t kPiPLReservedInfoProperty = 0x6165464C;   // 'aeFL'

inline constexpr std::uint32_t kPiPLKindEffect = 0x65464B54;  // 'eFKT'

}  // namespace orvin
