// Files through the window are what they are in memory.
#include "interchange/ModelInput.h"

#include <gtest/gtest.h>

#include "interchange/TextScanner.h"
#include "tests/interchange/ModelFixture.h"

namespace orvin {
namespace {

TEST(ModelInput, TextComesWholeThroughAnyWindow) {
    const std::string long1(300, '7');
    const std::string text =
        "first  line \r\n" + long1 + " -1.5e+2x 1e5 . nan -\n\n\tend\\" + long1;
    for (const std::size_t window : {1, 2, 3, 7, 16, 64, 300, 1000}) {
        ModelInput input(text, window);
        TextScanner scanner(input);
        for (int round = 0; round < 2; ++round, scanner.rewind()) {
            EXPECT_EQ(scanner.token(), "first");
            EXPECT_EQ(scanner.line(), "  line \r");
            EXPECT_EQ(scanner.number(), std::stod(long1)) << window;
            EXPECT_EQ(scanner.number(), -150.0) << window;
            EXPECT_EQ(scanner.number(), 1e5);
            for (int i = 0; i < 4; ++i)  // nothing behind the last
                EXPECT_EQ(scanner.number(), 0.0);
            EXPECT_TRUE(scanner.atLineEnd());
            scanner.skipLine();
            scanner.skipLine();
            EXPECT_EQ(scanner.peek(2), 'n');
            EXPECT_EQ(scanner.token(), "end\\" + long1);
            EXPECT_TRUE(scanner.atEnd());
            EXPECT_EQ(scanner.peek(), 0);
            EXPECT_EQ(scanner.percent(), 100);
        }
    }
}

using ModelInputFile = ModelFiles;

TEST_F(ModelInputFile, ThatShrinksWhileItIsReadFails) {
    std::string text(3 * ModelInput::kWindow, 'a');
    const fs::path path = file("a.obj", text);
    auto input = ModelInput::open(path);
    ASSERT_TRUE(input);
    EXPECT_EQ(*input->bytes(text.size() - 1, 1), 'a');
    EXPECT_EQ(*input->bytes(5, 1), 'a');  // back again
    EXPECT_FALSE(input->failed());
    file("a.obj", "short");
    EXPECT_EQ(*input->bytes(2 * ModelInput::kWindow, 1), 0);
    EXPECT_TRUE(input->failed());
    EXPECT_FALSE(ModelInput::open(path.parent_path()));
}

}  // namespace
}  // namespace orvin
