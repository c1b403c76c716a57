// Names of a scene's members: unique ones, and what a file's `name` lines may do.
#include <algorithm>
#include <charconv>

#include "scene/LineBuffer.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::size_t kLongestName = kNameCapacity - 1;
constexpr std::size_t kNumberRoom = 11;  // of an int and a point

bool isDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of(kDigits) == std::string_view::npos;
}

// The part up to the last non-digit, which numbers are put behind.
std::string_view stemOf(std::string_view name) {
    return name.substr(0, name.find_last_not_of(kDigits) + 1);
}

// The number of plain digits without leading zeros; nothing for another text.
std::optional<int> numberOf(std::string_view digits) {
    if (!isDigits(digits) || digits.front() == '0') return std::nullopt;
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc()) return std::nullopt;
    return number;
}

}  // namespace

std::string SceneX::uniqueName(std::string_view name) const {
    name = name.substr(0, kLongestName);
    if (memberByName(name) == nullptr) return std::string(name);
    std::string stem(stemOf(name));
    if (stem.size() >= 2 && stem.back() != '.') stem = std::string(name) + ".";
    if (stem.size() > kLongestName - kNumberRoom) {
        stem.resize(kLongestName - kNumberRoom);
        stem += '.';
    }
    int& number = freeNumbers_.try_emplace(stem, 1).first->second;
    for (;; ++number) {
        std::string candidate = stem + std::to_string(number);
        if (memberByName(candidate) == nullptr) return candidate;
    }
}

void SceneX::nameFreed(std::string_view name) {
    if (freeNumbers_.empty()) return;
    const std::string_view stem = stemOf(name);
    const auto number = numberOf(name.substr(stem.size()));
    if (!number) return;
    const auto known = freeNumbers_.find(std::string(stem));
    if (known != freeNumbers_.end()) known->second = std::min(known->second, *number);
}

void SceneX::renameOnLoad(SceneMember& member, std::string_view wanted) {
    const SceneMember* const other = memberByName(wanted);
    if (other == nullptr) {
        member.setName(wanted);
        return;
    }
    if (other == &member) return;
    const std::string_view present = member.name();
    const bool numberedAlready = present.size() > wanted.size() + 1 &&
                                 present.starts_with(wanted) && present[wanted.size()] == '.' &&
                                 isDigits(present.substr(wanted.size() + 1));
    if (!numberedAlready) member.setName(uniqueName(wanted));
}

int SceneX::maxAutoNumber(std::string_view prefix) const {
    int largest = 0;
    for (const auto& members : lists_)
        for (const SceneMember* member : members) {
            const std::string_view name = member->name();
            if (!name.starts_with(prefix) || !isDigits(name.substr(prefix.size()))) continue;
            int number = 0;
            const auto [end, error] =
                std::from_chars(name.data() + prefix.size(), name.data() + name.size(), number);
            if (error == std::errc()) largest = std::max(largest, number);
        }
    return largest;
}

}  // namespace orvin
