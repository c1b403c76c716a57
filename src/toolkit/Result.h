// Results of stream, command, geometry and reader operations.
#pragma once

namespace orvin {

using Result = int;

inline constexpr Result kSuccess = 0;
inline constexpr Result kFailure = -1;
inline constexpr Result kEndOfInput = -3;  // never an error by itself

}  // namespace orvin
