// Golden: compares rendered pictures with the ones that somebody has looked at and found good.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string>

namespace orvin::test {

/// Compares RGBA bytes (row 0 at the bottom) with tests/golden/<name>.tga. Passes when at most
/// 0.02 % of the values are off by more than 0.004 and none by more than 0.012. Otherwise
/// <name>-actual.tga and <name>-difference.tga (differences times 20, on opaque black) are left in
/// the folder golden-failures beside the test's working directory, and the message says so. To
/// accept a picture, look at it and copy it over the golden one.
testing::AssertionResult matchesGolden(const std::string& name, int width, int height,
                                       std::span<const std::uint8_t> rgba);

}  // namespace orvin::test
