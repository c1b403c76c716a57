// Numbers of files: the nearest double, in and out, against the C library.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>
#include <string>

#include "toolkit/Numbers.h"

namespace orvin {
namespace {

TEST(Numbers, ReadsWhatTheCLibraryReads) {
    std::istringstream texts(
        "0 -0 +1 +2 -1.5 .5 5. -.5x 1,5 1e3 1E-3 1e 12.25xyz 0.1 0.3 123456789012345678 "
        "1234567890123456789 12345678901234567890123 9007199254740993 9007199254740992.5 "
        "0.000000000000000000000001 0.0000000000000000000001 179769313486231580793e289 1e309 "
        "-1e309 1e-400 4.9e-324 00000000000000000000000001.5 1.7976931348623157e308 inf -nan");
    for (std::string text; texts >> text;) {
        char* end = nullptr;
        const double expected = std::strtod(text.c_str(), &end);
        double value = 99.0;
        const char* const got = scanDouble(text.data(), text.data() + text.size(), value);
        ASSERT_EQ(got, end) << text;
        EXPECT_TRUE(value == expected || (std::isnan(value) && std::isnan(expected))) << text;
        EXPECT_EQ(std::signbit(value), std::signbit(expected)) << text;
    }
    for (const char* const text : {"", "-", "+", ".", "e5", "+-1", "abc", "--1"}) {
        double value = 99.0;
        EXPECT_FALSE(readDouble(text, value)) << text;
        EXPECT_EQ(value, 99.0) << text;
    }
    int whole = 0;
    EXPECT_TRUE(readWhole("+12abc", whole));
    EXPECT_EQ(whole, 12);
    EXPECT_FALSE(readWhole("99999999999", whole));
}

TEST(Numbers, RandomTextsAgreeWithTheCLibrary) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i) {
        std::string text =
            std::to_string(static_cast<std::int64_t>(random() >> (1 + random() % 60)));
        text.insert(random() % (text.size() + 1), ".");
        if (i % 5 == 0) text += "e" + std::to_string(static_cast<int>(random() % 40) - 20);
        double value = 0.0;
        ASSERT_TRUE(readDouble(text, value)) << text;
        ASSERT_EQ(value, std::strtod(text.c_str(), nullptr)) << text;
    }
}

TEST(Numbers, WriteSixDecimals) {
    char text[kMaxNumberText];
    const auto written = [&](double v) { return std::string(text, writeFixed(text, v)); };
    EXPECT_EQ(written(1.0), "1.000000");
    EXPECT_EQ(written(-0.0000004), "-0.000000");
    EXPECT_EQ(written(123456.7891234), "123456.789123");
    EXPECT_EQ(written(std::numeric_limits<double>::max()).size(), 316U);
}

}  // namespace
}  // namespace orvin
