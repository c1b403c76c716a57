#include "scene/Registry.h"

namespace orvin {

std::size_t registryBucket(std::string_view name, std::size_t bucketCount) {
    // Bytes are signed and the shift is arithmetic on 32 bits, as the order of old tables has it.
    std::uint32_t hash = 0;
    for (std::size_t i = 0; i < name.size(); ++i)
        hash ^= static_cast<std::uint32_t>(static_cast<signed char>(name[i])) << (i & 31);
    const auto remainder = static_cast<std::int64_t>(static_cast<std::int32_t>(hash)) %
                           static_cast<std::int64_t>(bucketCount);
    return static_cast<std::size_t>(remainder < 0 ? -remainder : remainder);
}

}  // namespace orvin
