#include "vector/illustrator/AINames.h"

#include <algorithm>
#include <charconv>

#include "scene/LineBuffer.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr std::size_t kLongestName = kNameCapacity - 1;
constexpr std::size_t kNumberRoom = 12;  // of a point and an int
constexpr std::size_t kMostDigits = 9;   // that surely fit an int

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

AINames::AINames(const SceneX& scene) {
    for (int kind = 0; kind < static_cast<int>(MemberKind::kRoot); ++kind)
        for (const SceneMember* const member : scene.members(static_cast<MemberKind>(kind)))
            note(member->name());
}

void AINames::note(std::string_view name) {
    if (!taken_.emplace(name).second) return;
    // "Wing 12" is number 12 of "Wing " and number 2 of "Wing 1".
    std::size_t split = name.size();
    while (split > 0 && isDigit(name[split - 1]) && name.size() - split < kMostDigits) {
        --split;
        int number = 0;
        std::from_chars(name.data() + split, name.data() + name.size(), number);
        int& highest = highest_.try_emplace(std::string(name.substr(0, split)), 0).first->second;
        highest = std::max(highest, number);
    }
}

int AINames::highestNumber(std::string_view prefix) const {
    const auto found = highest_.find(std::string(prefix));
    return found != highest_.end() ? found->second : 0;
}

std::string AINames::numberedIfTaken(std::string_view name) {
    name = name.substr(0, kLongestName);
    if (taken_.find(std::string(name)) == taken_.end()) return unique(name);
    return unique(std::string(name) + std::to_string(highestNumber(name) + 1));
}

std::string AINames::unique(std::string_view name) {
    std::string result(name.substr(0, kLongestName));
    if (taken_.find(result) != taken_.end()) {
        const std::string stem = result.substr(0, kLongestName - kNumberRoom) + '.';
        int number = highestNumber(stem);
        do
            result = stem + std::to_string(++number);
        while (taken_.find(result) != taken_.end());
    }
    note(result);
    return result;
}

}  // namespace orvin
