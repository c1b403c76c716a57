// Letters of ASCII, whatever the locale.
#pragma once

#include <string>
#include <string_view>

namespace orvin {

/// "A" to "Z" in lower case, all other bytes as they are.
inline std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

}  // namespace orvin
