#include "host/PixelCopy.h"

#include <gtest/gtest.h>

namespace orvin {
namespace {

TEST(PixelCopy, FollowsTheTableOfCases) {
    const CopyRule composite{true, true, false, {}};
    const CopyRule keep{false, true, false, {}};
    const CopyRule solid{false, false, false, {0.5F, 1.0F, 0.0F}};
    const CopyRule drawn{false, false, true, {0.5F, 1.0F, 0.0F}};
    struct Case {
        const char* what;
        CopyRule rule;
        std::array<std::uint8_t, 4> rendered;  // r, g, b, a
        HostPixel input;                       // a, r, g, b
        HostPixel expected;
    };
    const Case cases[] = {
        {"composite, nothing rendered: input byte for byte",
         composite,
         {9, 8, 7, 0},
         {3, 200, 100, 50},
         {3, 200, 100, 50}},
        {"composite over opaque: weighted",
         composite,
         {255, 0, 100, 51},
         {255, 0, 100, 100},
         {255, 51, 80, 100}},
        {"composite over transparent: colour as premultiplied",
         composite,
         {200, 100, 0, 128},
         {0, 0, 0, 0},
         {128, 200, 100, 0}},
        {"composite over transparent colour clamps",
         composite,
         {250, 0, 0, 51},
         {0, 100, 0, 0},
         {51, 255, 0, 0}},
        {"composite over half transparent: alpha adds up and clamps",
         composite,
         {0, 0, 0, 255},
         {128, 9, 9, 9},
         {255, 0, 0, 0}},
        {"keep alpha: unchanged", keep, {1, 2, 3, 4}, {5, 6, 7, 8}, {4, 1, 2, 3}},
        {"solid, nothing rendered: background, cut off",
         solid,
         {9, 9, 9, 0},
         {},
         {255, 127, 255, 0}},
        {"solid, half: mixed", solid, {255, 0, 255, 51}, {}, {255, 153, 204, 51}},
        {"solid, background drawn: colour as it is", drawn, {9, 8, 7, 0}, {}, {255, 9, 8, 7}},
        {"solid, opaque: rendered", solid, {10, 20, 30, 255}, {}, {255, 10, 20, 30}},
    };
    for (const Case& c : cases) {
        HostPixel out;
        copyRow(c.rendered, {&c.input, 1}, {&out, 1}, c.rule);
        EXPECT_EQ(out, c.expected) << c.what << ": " << int{out.alpha} << ' ' << int{out.red} << ' '
                                   << int{out.green} << ' ' << int{out.blue};
    }
}

}  // namespace
}  // namespace orvin
