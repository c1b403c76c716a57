#include "scene/FileAccess.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "scene/LocateImage.h"
#include "tests/support/TempFolder.h"
#include "toolkit/Questions.h"

namespace orvin {
namespace {

namespace fs = std::filesystem;

class FileAccessTest : public testing::Test {
  protected:
    static std::string content(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    static void write(const fs::path& path, std::string_view text) {
        std::ofstream(path, std::ios::binary) << text;
    }
    static void put(FileAccess& file, std::string_view text) {
        EXPECT_EQ(std::fwrite(text.data(), 1, text.size(), file.file()), text.size());
    }
    std::size_t fileCount() const {
        const fs::directory_iterator files(folder);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    const test::TempFolder temporary;
    const fs::path folder = temporary.path();
};

TEST_F(FileAccessTest, AReplacedFileChangesOnlyInCommit) {
    const auto path = folder / "f";
    write(path, "old");
    FileAccess file;
    ASSERT_EQ(file.open(path, FileAccess::Mode::kReplace), kSuccess);
    put(file, "new");
    EXPECT_EQ(content(path), "old");
    file.close();
    EXPECT_EQ(content(path), "old");
    ASSERT_EQ(file.open(path, FileAccess::Mode::kReplace), kSuccess);
    put(file, "new");
    EXPECT_EQ(file.commit(), kSuccess);
    EXPECT_EQ(content(path), "new");
    EXPECT_EQ(file.commit(), kFailure);  // nothing open
    EXPECT_EQ(fileCount(), 1U);
}

TEST_F(FileAccessTest, ALinkStaysALink) {
    const auto path = folder / "f";
    const auto link = folder / "link";
    write(path, "old");
    std::error_code error;
    fs::create_symlink(path, link, error);
    if (error) GTEST_SKIP() << "no links here";
    FileAccess file;
    ASSERT_EQ(file.open(link, FileAccess::Mode::kReplace), kSuccess);
    put(file, "new");
    ASSERT_EQ(file.commit(), kSuccess);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(content(path), "new");
}

TEST_F(FileAccessTest, AppendsUpdatesAndRefuses) {
    const auto path = folder / "f";
    FileAccess file;
    EXPECT_EQ(file.open(path, FileAccess::Mode::kRead), kFailure);
    EXPECT_NE(file.failure().find(path.string()), std::string::npos);
    EXPECT_EQ(file.open(folder, FileAccess::Mode::kRead), kFailure);
    ASSERT_EQ(file.open(path, FileAccess::Mode::kUpdate), kSuccess);
    EXPECT_EQ(file.writeBig32(0x01020304U), kSuccess);
    EXPECT_EQ(file.writeBig16(0xFFFEU), kSuccess);
    ASSERT_EQ(file.commit(), kSuccess);
    EXPECT_EQ(content(path), std::string("\x01\x02\x03\x04\xFF\xFE"));
    ASSERT_EQ(file.open(path, FileAccess::Mode::kAppend), kSuccess);
    put(file, "!");
    ASSERT_EQ(file.commit(), kSuccess);
    ASSERT_EQ(file.open(path, FileAccess::Mode::kRead), kSuccess);
    std::uint32_t four = 0;
    std::uint16_t two = 0;
    EXPECT_EQ(file.readBig32(four), kSuccess);
    EXPECT_EQ(file.readBig16(two), kSuccess);
    EXPECT_EQ(four, 0x01020304U);
    EXPECT_EQ(two, 0xFFFEU);
    EXPECT_EQ(file.readBig16(two), kFailure);  // a single byte is left
}

TEST_F(FileAccessTest, LinesEndAtEitherCharacter) {
    const auto path = folder / "f";
    write(path, "a\nb\rc\r\n\nlong line\nlast");
    FileAccess file;
    ASSERT_EQ(file.open(path, FileAccess::Mode::kRead), kSuccess);
    std::string line;
    for (const char* expected : {"a", "b", "c", "", "long", "last"}) {
        ASSERT_EQ(file.readLine(line, 4), kSuccess);
        EXPECT_EQ(line, expected);
    }
    EXPECT_EQ(file.readLine(line), kEndOfInput);
}

TEST_F(FileAccessTest, ALostImageIsLookedForThenAskedFor) {
    struct User : Questions {
        void showMessage(std::string_view text, bool) override { told = text; }
        int ask(std::string_view, std::string_view, std::string_view, std::string_view) override {
            return -1;
        }
        std::optional<fs::path> openFile(std::string_view title, std::string_view) override {
            asked = title;
            return answer;
        }
        std::optional<fs::path> saveFile(std::string_view, std::string_view) override {
            return std::nullopt;
        }
        std::string told, asked;
        std::optional<fs::path> answer;
    } user;
    Questions* const before = setQuestions(&user);
    gLastImageFolder.clear();

    EXPECT_EQ(locateImage("C:\\maps\\wood.tga"), std::nullopt);
    EXPECT_EQ(user.asked, "Please locate image: C:\\maps\\wood.tga");
    EXPECT_EQ(user.told, "Unable to open image: C:\\maps\\wood.tga");
    EXPECT_TRUE(gLastImageFolder.empty());

    // What is picked needn't bear the name; its folder is the first place for the next image.
    write(folder / "oak.tga", "");
    write(folder / "stone.tga", "");
    user.answer = folder / "oak.tga";
    EXPECT_EQ(locateImage("C:\\maps\\wood.tga"), (folder / "oak.tga").string());
    user.asked.clear();
    for (const char* path : {"D:\\x\\stone.tga", "/x/stone.tga", "Disk:x:stone.tga", "stone.tga"})
        EXPECT_EQ(locateImage(path), (folder / "stone.tga").string()) << path;
    EXPECT_TRUE(user.asked.empty());
    user.answer.reset();
    for (const char* path : {"", "..", "/x/.."})  // a folder is no image
        EXPECT_EQ(locateImage(path), std::nullopt) << path;

    gLastImageFolder.clear();
    setQuestions(before);
}

}  // namespace
}  // namespace orvin
