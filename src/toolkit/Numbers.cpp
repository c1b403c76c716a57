#include "toolkit/Numbers.h"

#include <cstdint>
#include <iterator>
#include <limits>

namespace orvin {

namespace {

std::string_view withoutPlus(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    return text;
}

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr std::ptrdiff_t kMostDigits = 19;           // that surely fit 64 bits
constexpr std::uint64_t kLargestExact = 1ULL << 53;  // whole numbers up to here are doubles
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

const char* scanGeneralDouble(const char* first, const char* last, double& out) {
    const std::string_view text = withoutPlus({first, static_cast<std::size_t>(last - first)});
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), last, value);
    if (error == std::errc::result_out_of_range) {
        // What strtod gives: a huge number becomes infinite, a tiny one zero. The exponent tells.
        const std::string_view number(text.data(), static_cast<std::size_t>(end - text.data()));
        const auto exponent = number.find_first_of("eE");
        const bool tiny = exponent != std::string_view::npos
                              ? number.substr(exponent + 1).starts_with('-')
                              : number.find_first_of("123456789") > number.find('.');
        const double magnitude = tiny ? 0.0 : std::numeric_limits<double>::infinity();
        out = number.starts_with('-') ? -magnitude : magnitude;
        return end;
    }
    if (error != std::errc()) return nullptr;
    out = value;
    return end;
}

}  // namespace

const char* scanDouble(const char* first, const char* last, double& out) {
    const char* p = first;
    const bool negative = p != last && *p == '-';
    if (p != last && (*p == '-' || *p == '+')) ++p;
    const char* const digits = p;
    std::uint64_t mantissa = 0;
    const auto scanDigits = [&] {
        for (; p != last && isDigit(*p); ++p)
            mantissa = mantissa * 10 + static_cast<std::uint64_t>(*p - '0');
    };
    scanDigits();
    std::ptrdiff_t count = p - digits;
    std::ptrdiff_t decimals = 0;
    if (p != last && *p == '.') {
        const char* const fraction = ++p;
        scanDigits();
        decimals = p - fraction;
        count += decimals;
    }
    // Few digits: mantissa and power are exact, so that their quotient is rounded once, rightly.
    const bool plain = count > 0 && count <= kMostDigits && mantissa <= kLargestExact &&
                       decimals < std::ssize(kPowersOfTen) && (p == last || (*p | 0x20) != 'e');
    if (!plain) return scanGeneralDouble(first, last, out);
    const double magnitude = static_cast<double>(mantissa) / kPowersOfTen[decimals];
    out = negative ? -magnitude : magnitude;
    return p;
}

bool readDouble(std::string_view text, double& out) {
    return scanDouble(text.data(), text.data() + text.size(), out) != nullptr;
}

bool readWhole(std::string_view text, int& out) {
    text = withoutPlus(text);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end == text.data()) return false;
    out = value;
    return true;
}

}  // namespace orvin
