#include "host/EffectResource.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "host/EffectIdentity.h"

namespace orvin {
namespace {

struct Property {
    std::size_t start;
    std::uint32_t length;
    std::string data;
};

std::uint32_t read32(const std::vector<std::uint8_t>& bytes, std::size_t at) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

// Reads the resource as a host does, by the layout alone.
std::map<std::string, Property> properties(const std::vector<std::uint8_t>& bytes) {
    std::map<std::string, Property> found;
    std::size_t at = 10;
    for (std::uint32_t left = read32(bytes, 6); left > 0; --left) {
        if (at + 16 > bytes.size() || read32(bytes, at) != 0x3842494DU) break;
        const std::uint32_t key = read32(bytes, at + 4);
        const std::uint32_t length = read32(bytes, at + 12);
        const std::size_t stored = (length + 3) / 4 * 4;
        if (at + 16 + stored > bytes.size()) break;
        std::string name;
        for (int shift = 24; shift >= 0; shift -= 8)
            name += static_cast<char>(key >> shift & 0xFFU);
        const auto* data = reinterpret_cast<const char*>(bytes.data() + at + 16);
        found[name] = {at, length, std::string(data, stored)};
        at += 16 + stored;
    }
    EXPECT_EQ(at, bytes.size());
    return found;
}

std::string word(std::uint32_t value) {
    std::string bytes(4, '\0');
    std::memcpy(bytes.data(), &value, 4);
    return bytes;
}

TEST(EffectResource, IsWhatTheHostReads) {
    const auto bytes = effectResource();
    ASSERT_EQ(bytes.size(), 282U);
    EXPECT_EQ(bytes[0], 1);
    const auto p = properties(bytes);
    ASSERT_EQ(p.size(), 12U);

    const struct {
        const char* key;
        std::size_t start;
        std::string data;
    } rows[] = {{"kind", 10, "TKFe"},  // 'eFKT', low byte first
                {"name", 30,
                 std::string("\x0A"
                             "3D Orvinex\0",
                             12)},
                {"catg", 58,
                 std::string("\x08"
                             "Tarnwick\0\0\0",
                             12)},
                {"8664", 86, std::string("main\0\0\0\0", 8)},
                {"ePVR", 110, std::string("\x02\0\0\0", 4)},
                {"eSVR", 130, std::string("\x0D\0\0\0", 4)},
                {"eVER", 150, word(1048576)},
                {"eGLO", 190, word(67142709)},
                {"eGL2", 210, word(7)},
                {"eMNA", 230,
                 std::string("\x0C"
                             "TW_3DO_Devel\0\0\0",
                             16)}};
    for (const auto& row : rows) {
        EXPECT_EQ(p.at(row.key).start, row.start) << row.key;
        EXPECT_EQ(p.at(row.key).data, row.data) << row.key;
    }
    EXPECT_EQ(p.at("eINF").start, 170U);
    EXPECT_EQ(p.at("eINF").length, 2U);
    EXPECT_EQ(p.at("aeFL").start, 262U);
}

TEST(EffectResource, TheFileForTheResourceCompilerHoldsTheseBytes) {
    std::ifstream file(ORVIN_SOURCE_DIR "/src/host/module/3DOrvinex.pipl", std::ios::binary);
    const std::vector<std::uint8_t> stored((std::istreambuf_iterator<char>(file)), {});
    EXPECT_EQ(stored, effectResource());
}

}  // namespace
}  // namespace orvin
