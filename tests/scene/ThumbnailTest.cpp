// Thumbnails in the word stream: the bytes on paper, both ways.
#include "scene/Thumbnail.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "scene/MemoryStream.h"

namespace orvin {
namespace {

using namespace std::string_literals;

// 3 x 2, so that a bitmap row has padding: 12 bytes for 9.
twPicture sample() {
    twPicture picture(3, 2);
    const std::vector<std::uint8_t> top = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    const std::vector<std::uint8_t> bottom = {0xa0, 0xb1, 0xc2, 0, 0, 0, 255, 254, 253};
    picture.writeRgbRow(0, top);
    picture.writeRgbRow(1, bottom);
    return picture;
}

std::vector<std::uint8_t> bytesOf(const twPicture& picture) {
    return {picture.bits().begin(), picture.bits().end()};
}

constexpr const char* kText =
    "ThumbnailSize 3 2\nThumbnail\n010203040506070809\na0b1c2000000fffefd\n";
const std::string kBinary =
    "ThumbnailSize 3 2\nBinaryThumbnail\n\3\2\1\6\5\4\11\10\7\xc2\xb1\xa0\0\0\0\xfd\xfe\xff"s;

TEST(Thumbnail, WritesItsTwoForms) {
    MemoryStream text(nullptr);
    EXPECT_EQ(writeThumbnail(text, sample(), ThumbnailForm::kText), kSuccess);
    EXPECT_EQ(text.text(), kText);
    MemoryStream binary(nullptr);
    EXPECT_EQ(writeThumbnail(binary, sample(), ThumbnailForm::kBinary), kSuccess);
    EXPECT_EQ(binary.text(), kBinary);
}

TEST(Thumbnail, WritesNothingForAnEmptyPictureAndForRowsThatDoNotFit) {
    const struct {
        int width, height;
        ThumbnailForm form;
        Result result;
    } cases[] = {
        {0, 5, ThumbnailForm::kText, kSuccess},
        {5, 0, ThumbnailForm::kBinary, kSuccess},
        {683, 1, ThumbnailForm::kText, kFailure},
        {1366, 1, ThumbnailForm::kBinary, kFailure},
    };
    for (const auto& c : cases) {
        MemoryStream stream(nullptr);
        EXPECT_EQ(writeThumbnail(stream, twPicture(c.width, c.height), c.form), c.result);
        EXPECT_EQ(stream.text(), "");
    }
}

// Reads "ThumbnailSize", the key behind it, the pixels, and one token more.
std::unique_ptr<twPicture> readBack(const std::string& input, bool otherPlatform,
                                    std::string& next) {
    MemoryStream stream(nullptr, input);
    std::string key;
    ThumbnailSize size;
    stream.nextToken(key);
    if (key == "ThumbnailSize") {
        if (readThumbnailSize(stream, size) != kSuccess) return nullptr;
        stream.nextToken(key);
    }
    const auto form = key == "Thumbnail" ? ThumbnailForm::kText : ThumbnailForm::kBinary;
    auto picture = readThumbnail(stream, size, form, otherPlatform);
    stream.nextToken(next);
    return picture;
}

TEST(Thumbnail, ReadsItsFourForms) {
    const struct {
        const char* caption;
        std::string input;
        bool otherPlatform;
    } cases[] = {
        {"text", kText, false},
        {"binary", kBinary, false},
        {"capital digits", "ThumbnailSize 3 2 Thumbnail 010203040506070809 A0B1C2000000FFFEFD\n",
         false},
        {"other text",
         "ThumbnailSize 3 2\nThumbnail\n990102039904050699070809\n99a0b1c29900000099fffefd\n",
         true},
        {"other binary",
         "ThumbnailSize 3 2\nBinaryThumbnail\nx\1\2\3x\4\5\6x\7\10\11x\xa0\xb1\xc2x\0\0\0x\xff\xfe\xfd"s,
         true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.caption);
        std::string next;
        const auto picture = readBack(c.input + "end", c.otherPlatform, next);
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(bytesOf(*picture), bytesOf(sample()));
        EXPECT_EQ(next, "end");
    }
}

TEST(Thumbnail, RefusesWhatIsNone) {
    const struct {
        const char* caption;
        std::string input;
    } cases[] = {
        {"no size before", "Thumbnail\n010203\n"},
        {"size 0", "ThumbnailSize 0 2\nThumbnail\n"},
        {"negative size", "ThumbnailSize 2 -2\nThumbnail\n010203040506\n"},
        {"no numbers", "ThumbnailSize wide high\n"},
        {"row beyond the line", "ThumbnailSize 1366 1\nBinaryThumbnail\n" + std::string(5000, 'x')},
        {"text row beyond the line", "ThumbnailSize 683 1\nThumbnail\n" + std::string(4098, '0')},
        {"absurd height", "ThumbnailSize 1 2000000000\nThumbnail\n010203\n"},
        {"short row", "ThumbnailSize 2 1\nThumbnail\n0102030405\n"},
        {"long row", "ThumbnailSize 1 1\nThumbnail\n01020304\n"},
        {"no digits", "ThumbnailSize 1 1\nThumbnail\n01020g\n"},
        {"row missing", "ThumbnailSize 1 2\nThumbnail\n010203\n"},
        {"bytes missing", "ThumbnailSize 2 1\nBinaryThumbnail\n12345"},
    };
    for (const auto& c : cases) {
        std::string next;
        EXPECT_EQ(readBack(c.input, false, next), nullptr) << c.caption;
    }
}

}  // namespace
}  // namespace orvin
