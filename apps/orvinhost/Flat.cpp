#include "orvinhost/Flat.h"

#include <algorithm>
#include <string>

namespace orvin::stand_in {
namespace {

constexpr std::string_view kTag = "FLAT";
constexpr std::string_view kEndMark = "**EndOfStream**";

}  // namespace

std::vector<std::uint8_t> flatFromProject(std::string_view text) {
    std::string body(text);
    // The mark ends a project only as a line of its own; a longer file may hold it in binary data.
    std::string_view tail = body;
    while (!tail.empty() && (tail.back() == '\n' || tail.back() == '\r' || tail.back() == ' ' ||
                             tail.back() == '\0'))
        tail.remove_suffix(1);
    const bool ended =
        tail.size() >= kEndMark.size() && tail.substr(tail.size() - kEndMark.size()) == kEndMark;
    if (!ended) {
        if (!body.empty() && body.back() != '\n') body += '\n';
        body += kEndMark;
        body += '\n';
    }
    body += '\0';
    const std::size_t size = kTag.size() + 4 + body.size();
    std::vector<std::uint8_t> flat(kTag.begin(), kTag.end());
    for (int shift = 0; shift < 32; shift += 8)
        flat.push_back(static_cast<std::uint8_t>(size >> shift & 255u));
    flat.insert(flat.end(), body.begin(), body.end());
    return flat;
}

bool looksFlat(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= 8 && std::equal(kTag.begin(), kTag.end(), bytes.begin());
}

}  // namespace orvin::stand_in
