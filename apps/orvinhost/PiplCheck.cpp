#include "orvinhost/PiplCheck.h"

#include "host/abi/PiPL.h"

#include <map>

namespace orvin::stand_in {
namespace {

constexpr std::size_t kHeader = 10;

std::uint32_t word(std::span<const std::uint8_t> bytes, std::size_t at) {
    return static_cast<std::uint32_t>(bytes[at]) | static_cast<std::uint32_t>(bytes[at + 1]) << 8 |
           static_cast<std::uint32_t>(bytes[at + 2]) << 16 |
           static_cast<std::uint32_t>(bytes[at + 3]) << 24;
}

}  // namespace

std::vector<std::string> piplFaults(std::span<const std::uint8_t> resource,
                                    const ReportedIdentity& reported) {
    if (resource.size() < kHeader) return {"the resource is cut off"};
    std::map<std::uint32_t, std::span<const std::uint8_t>> properties;
    std::size_t at = kHeader;
    const std::uint32_t count = word(resource, 6);
    for (std::uint32_t i = 0; i < count; ++i) {
        if (resource.size() - at < 16) return {"property " + std::to_string(i) + " is cut off"};
        const std::uint32_t length = word(resource, at + 12);
        const std::uint64_t padded = (std::uint64_t{length} + 3) / 4 * 4;
        if (word(resource, at) != kPiPLVendor) return {"property " + std::to_string(i)};
        if (resource.size() - at - 16 < padded)
            return {"property " + std::to_string(i) + " is cut off"};
        properties[word(resource, at + 4)] =
            resource.subspan(at + 16, static_cast<std::size_t>(padded));
        at += 16 + static_cast<std::size_t>(padded);
    }
    std::vector<std::string> faults;
    const auto compare = [&](std::uint32_t key, const char* name, std::uint32_t wanted) {
        const auto found = properties.find(key);
        if (found == properties.end() || found->second.size() < 4)
            faults.push_back(std::string(name) + " is missing");
        else if (word(found->second, 0) != wanted)
            faults.push_back(std::string(name) + " is " + std::to_string(word(found->second, 0)) +
                             ", GLOBAL_SETUP says " + std::to_string(wanted));
    };
    compare(kPiPLKindProperty, "kind", kPiPLKindEffect);
    compare(kPiPLOutFlagsProperty, "out_flags", static_cast<std::uint32_t>(reported.outFlags));
    compare(kPiPLOutFlags2Property, "out_flags2", static_cast<std::uint32_t>(reported.outFlags2));
    compare(kPiPLEffectVersionProperty, "version", reported.version);
    return faults;
}

}  // namespace orvin::stand_in
