#include "toolkit/Numbers.h"

#include <limits>

namespace orvin {

namespace {

std::string_view withoutPlus(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    return text;
}

}  // namespace

bool readDouble(std::string_view text, double& out) {
    text = withoutPlus(text);
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        // What strtod gives: a huge number becomes infinite, a tiny one zero. The exponent tells.
        const std::string_view number(text.data(), static_cast<std::size_t>(end - text.data()));
        const auto exponent = number.find_first_of("eE");
        const bool tiny = exponent != std::string_view::npos
                              ? number.substr(exponent + 1).starts_with('-')
                              : number.find_first_of("123456789") > number.find('.');
        const double magnitude = tiny ? 0.0 : std::numeric_limits<double>::infinity();
        out = number.starts_with('-') ? -magnitude : magnitude;
        return true;
    }
    if (error != std::errc()) return false;
    out = value;
    return true;
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
