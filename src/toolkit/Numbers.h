// Text numbers without the locale: a host that runs with a comma locale must not reach a file.
// Built on std::from_chars and std::to_chars; the bytes are those of "%lf" and "%d" in the C
// locale.
#pragma once

#include <charconv>
#include <string_view>

namespace orvin {

/// Longest text that writeFixed makes: 309 digits before the point, sign, point and six decimals.
inline constexpr int kMaxNumberText = 320;

/// Writes `value` with six decimals at `out` (room for kMaxNumberText bytes); returns the end.
/// Not-a-number and infinity come out as "nan", "inf", "-nan", "-inf".
inline char* writeFixed(char* out, double value) {
    return std::to_chars(out, out + kMaxNumberText, value, std::chars_format::fixed, 6).ptr;
}

/// Writes a whole number at `out` (room for 24 bytes); returns the end.
inline char* writeWhole(char* out, long long value) {
    return std::to_chars(out, out + 24, value).ptr;
}

/// Reads a number as "%lf" would from the start of `text` (a leading '+' is accepted, what follows
/// the number is ignored). False where no number starts. "inf" and "nan" are numbers here: callers
/// that can't use them must test.
bool readDouble(std::string_view text, double& out);

/// The same between two pointers; returns the end of the number, or null where none starts. The
/// value is the double nearest to the text, whatever the number of digits.
const char* scanDouble(const char* first, const char* last, double& out);

/// Reads a whole number as "%d" would; out of the range of int is false.
bool readWhole(std::string_view text, int& out);

}  // namespace orvin
