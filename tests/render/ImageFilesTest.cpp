// Texture files: made by hand byte for byte, and pictures that another program wrote.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "render/image/ImageLoad.h"
#include "render/image/SgiReader.h"
#include "render/image/TgaReader.h"
#include "tests/support/TempFolder.h"

namespace orvin {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes repeat(std::size_t count, const Bytes& unit) {
    Bytes all;
    for (std::size_t i = 0; i < count; ++i)
        all = all + unit;
    return all;
}

Bytes pixelsOf(const ImageBuffer& image) {
    const std::uint8_t* data = image.direct();
    if (data == nullptr) return {};
    return {data, data + image.rowBytes() * static_cast<std::size_t>(image.height())};
}

std::uint8_t low(int value) {
    return static_cast<std::uint8_t>(value & 255);
}
std::uint8_t high(int value) {
    return static_cast<std::uint8_t>(value >> 8 & 255);
}

struct TgaHeader {
    int type = 10;
    int width = 2;
    int height = 1;
    int depth = 24;
    int descriptor = 0;
    int idLength = 0;
    int mapLength = 0;
};

Bytes tga(const TgaHeader& h) {
    Bytes bytes(18);
    bytes[0] = low(h.idLength);
    bytes[2] = low(h.type);
    bytes[5] = low(h.mapLength);
    bytes[6] = high(h.mapLength);
    bytes[12] = low(h.width);
    bytes[13] = high(h.width);
    bytes[14] = low(h.height);
    bytes[15] = high(h.height);
    bytes[16] = low(h.depth);
    bytes[17] = low(h.descriptor);
    return bytes;
}

Bytes sgi(int storage, int width, int height, int channels) {
    Bytes bytes(512);
    bytes[0] = 1;
    bytes[1] = 218;
    bytes[2] = low(storage);
    bytes[3] = 1;
    bytes[5] = 3;
    const int sizes[] = {width, height, channels};
    for (std::size_t i = 0; i < 3; ++i) {
        bytes[6 + i * 2] = high(sizes[i]);
        bytes[7 + i * 2] = low(sizes[i]);
    }
    return bytes;
}

Bytes bigEndian(const std::vector<std::uint32_t>& words) {
    Bytes bytes;
    for (const std::uint32_t w : words)
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes.push_back(static_cast<std::uint8_t>(w >> shift));
    return bytes;
}

struct Case {
    const char* caption;
    Bytes file;
    Bytes pixels;  // empty: the file is refused
    PixelKind kind = PixelKind::kRgb;
};

void checkAll(Result (*read)(std::span<const std::uint8_t>, ImageBuffer&),
              const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.caption);
        ImageBuffer image(1, 1, PixelKind::kRgb);
        EXPECT_EQ(read(c.file, image), c.pixels.empty() ? kFailure : kSuccess);
        EXPECT_EQ(image.kind(), c.pixels.empty() ? PixelKind::kNone : c.kind);
        EXPECT_EQ(pixelsOf(image), c.pixels);
    }
}

TEST(TgaReader, HandWorkedFiles) {
    const Bytes bgr = {1, 2, 3, 4, 5, 6};
    const Bytes rgb = {3, 2, 1, 6, 5, 4};
    checkAll(
        readTga,
        {
            {"raw colour", tga({.type = 2}) + bgr, rgb},
            {"rows as stored", tga({.type = 2, .width = 1, .height = 2, .descriptor = 0x20}) + bgr,
             rgb},
            {"identification skipped", tga({.type = 2, .idLength = 2}) + Bytes{9, 9} + bgr, rgb},
            {"map length counts bytes", tga({.type = 2, .mapLength = 3}) + Bytes{9, 9, 9} + bgr,
             rgb},
            {"grey", tga({.type = 3, .depth = 8}) + Bytes{7, 9}, {7, 7, 7, 9, 9, 9}},
            {"grey run", tga({.type = 11, .depth = 8}) + Bytes{0x81, 7}, {7, 7, 7, 7, 7, 7}},
            {"eight bits as colour", tga({.depth = 8}) + Bytes{1, 7, 9}, {7, 7, 7, 9, 9, 9}},
            {"alpha",
             tga({.depth = 32, .descriptor = 8}) + Bytes{1, 1, 2, 3, 0, 4, 5, 6, 9},
             {3, 2, 1, 0, 6, 5, 4, 9},
             PixelKind::kRgba},
            {"alpha clear everywhere is opaque",
             tga({.depth = 32, .descriptor = 8}) + Bytes{0x81, 1, 2, 3, 0},
             {3, 2, 1, 255, 3, 2, 1, 255},
             PixelKind::kRgba},
            {"run and raw packet", tga({.width = 4}) + Bytes{0x81, 1, 2, 3, 1} + bgr,
             Bytes{3, 2, 1, 3, 2, 1} + rgb},
            {"a run stops at the row's end",
             tga({.width = 1, .height = 2}) + Bytes{0x85, 1, 2, 3, 0x80, 4, 5, 6}, rgb},
            {"a raw packet reads no further than its row",
             tga({.width = 1, .height = 2}) + Bytes{5, 1, 2, 3, 0, 4, 5, 6}, rgb},
            // 0xBF: a run of 64 elsewhere; the mask 95 makes it 32.
            {"mask 95 on a run",
             tga({.type = 11, .width = 33, .depth = 8}) + Bytes{0xbf, 7, 0x80, 9},
             repeat(32, {7, 7, 7}) + Bytes{9, 9, 9}},
            {"mask 95 on the longest run",
             tga({.type = 11, .width = 97, .depth = 8}) + Bytes{0xff, 7, 0x80, 9},
             repeat(96, {7, 7, 7}) + Bytes{9, 9, 9}},
            {"mask 95 on a raw packet",
             tga({.type = 11, .width = 2, .depth = 8}) + Bytes{0x20, 5, 0x20, 6},
             {5, 5, 5, 6, 6, 6}},

            {"empty", {}, {}},
            {"half a header", Bytes(17), {}},
            {"colour-mapped", tga({.type = 1, .depth = 8}) + bgr, {}},
            {"sixteen bits", tga({.type = 2, .depth = 16}) + bgr, {}},
            {"no alpha bits", tga({.type = 2, .depth = 32}) + bgr + bgr, {}},
            {"no width", tga({.type = 2, .width = 0}) + bgr, {}},
            {"raw cut short", tga({.type = 2}) + Bytes{1, 2, 3, 4, 5}, {}},
            {"run cut short", tga({}) + Bytes{0x81, 1, 2}, {}},
            {"packet missing", tga({.width = 4}) + Bytes{0x81, 1, 2, 3}, {}},
            {"map beyond the file", tga({.type = 2, .mapLength = 60000}) + bgr, {}},
            {"size beyond what the bytes can hold",
             tga({.width = 65535, .height = 65535}) + repeat(1000, {0xdf, 1, 2, 3}),
             {}},
        });
}

TEST(SgiReader, HandWorkedFiles) {
    // 2 x 2 x 3, run-length: 6 rows; the tables take 512..560.
    const Bytes offsets = bigEndian({560, 563, 560, 566, 560, 569});
    const Bytes lengths = bigEndian({3, 3, 3, 3, 3, 3});
    const Bytes rows = Bytes{2, 10, 0} + Bytes{0x82, 20, 30} + Bytes{2, 40, 0} + Bytes{2, 50, 0};
    const Bytes expected = {10, 10, 10, 10, 10, 10, 20, 40, 50, 30, 40, 50};
    const Bytes verbatim = sgi(0, 2, 1, 4) + Bytes{1, 2, 3, 4, 5, 6, 7, 8};
    const auto changed = [&](std::size_t at, std::uint8_t value) {
        Bytes bytes = verbatim;
        bytes[at] = value;
        return bytes;
    };
    checkAll(
        readSgi,
        {
            {"planes", verbatim, {1, 3, 5, 7, 2, 4, 6, 8}, PixelKind::kRgba},
            {"shared rows, runs, literals", sgi(1, 2, 2, 3) + offsets + lengths + rows, expected},
            {"an end mark leaves the rest 0",
             sgi(1, 2, 1, 3) + bigEndian({536, 536, 538, 3, 3, 3}) + Bytes{1, 9, 0, 9},
             {9, 9, 0, 0, 0, 0}},
            {"a run stops at the row's end",
             sgi(1, 2, 1, 3) + bigEndian({536, 536, 536, 2, 2, 2}) + Bytes{127, 9},
             {9, 9, 9, 9, 9, 9}},

            {"empty", {}, {}},
            {"only a header", sgi(0, 2, 1, 4), {}},
            {"wrong magic", changed(1, 219), {}},
            {"unknown storage", changed(2, 2), {}},
            {"two bytes a channel", changed(3, 2), {}},
            {"grey", changed(11, 1), {}},
            {"colour map", changed(107, 1), {}},
            {"no height", changed(9, 0), {}},
            {"verbatim cut short", Bytes(verbatim.begin(), verbatim.end() - 1), {}},
            {"tables cut short", sgi(1, 2, 2, 3) + offsets, {}},
            {"row cut short",
             sgi(1, 2, 2, 3) + offsets + lengths + Bytes(rows.begin(), rows.end() - 3),
             {}},
            {"literal cut short",
             sgi(1, 9, 1, 3) + bigEndian({536, 536, 536, 9, 9, 9}) + Bytes{0x89, 1, 2},
             {}},
            {"offset beyond the file",
             sgi(1, 2, 1, 3) + bigEndian({536, 536, 0xffffffff, 2, 2, 2}) + Bytes{2, 9},
             {}},
            {"rows shared beyond reason",
             sgi(1, 65535, 4000, 3) + Bytes(std::size_t{4000} * 24) + repeat(517, {127, 0}),
             {}},
        });
}

Bytes pattern(bool withAlpha, bool bottomFirst) {
    Bytes pixels;
    for (int row = 0; row < 17; ++row) {
        const int y = bottomFirst ? 16 - row : row;
        for (int x = 0; x < 29; ++x) {
            Bytes pixel = {low(x * 37 + y * 11), low(x * x + y * 5), low(x * y * 7),
                           low(x * 9 + y * 3)};
            if (x < 12 && y < 9) {
                pixel = {200, 40, 10, 255};
            } else if (y > 12) {
                pixel = {10, 90, 220, 128};
            }
            pixel.resize(withAlpha ? 4 : 3);
            pixels = pixels + pixel;
        }
    }
    return pixels;
}

std::string fixture(const std::string& name) {
    return std::string(ORVIN_SOURCE_DIR) + "/tests/render/fixtures/" + name;
}

Bytes fileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(ImageLoad, ReadsWhatAnotherProgramWrote) {
    Bytes grey;
    for (const std::uint8_t value : fileBytes(fixture("grey.bin")))
        grey = grey + Bytes(3, value);
    ASSERT_EQ(grey.size(), 29U * 17U * 3U);
    const struct {
        const char* name;
        Bytes pixels;
    } cases[] = {
        {"colour-raw.tga", pattern(false, false)}, {"colour-rle.tga", pattern(false, false)},
        {"alpha-rle.tga", pattern(true, false)},   {"grey-rle.tga", grey},
        {"colour-raw.sgi", pattern(false, true)},  {"colour-rle.sgi", pattern(false, true)},
        {"alpha-rle.sgi", pattern(true, true)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ImageBuffer image;
        ASSERT_EQ(loadImage(fixture(c.name), image), kSuccess);
        EXPECT_EQ(image.width(), 29);
        EXPECT_EQ(image.height(), 17);
        EXPECT_EQ(image.path(), fixture(c.name));
        EXPECT_EQ(pixelsOf(image), c.pixels);
    }
}

// No prefix of a good file may do more than fail; the sanitizers watch the rest.
TEST(ImageLoad, EveryPrefixIsRefused) {
    for (const char* name : {"alpha-rle.tga", "grey-rle.tga", "colour-raw.sgi"}) {
        const Bytes whole = fileBytes(fixture(name));
        const auto read = std::string_view(name).ends_with("sgi") ? readSgi : readTga;
        for (std::size_t size = 0; size < whole.size(); ++size) {
            ImageBuffer image;
            ASSERT_EQ(read(std::span(whole).first(size), image), kFailure) << name << size;
        }
    }
}

TEST(ImageLoad, NamesDecideWhatIsRead) {
    const test::TempFolder folder;
    const auto copy = [&](const char* from, const char8_t* to) {
        const auto target = folder.path() / to;
        std::filesystem::copy_file(fixture(from), target);
        const std::u8string name = target.u8string();
        return std::string(name.begin(), name.end());
    };
    ImageBuffer image;
    // An SGI picture behind a Targa name, in characters that no code page has together.
    EXPECT_EQ(loadImage(copy("colour-rle.sgi", u8"orvin-\u00e4\u0416\u6f22.tga"), image), kSuccess);
    EXPECT_EQ(pixelsOf(image), pattern(false, true));
    for (const char8_t* name : {u8"orvin.tif", u8"orvin.TGA", u8"orvin.shd", u8"orvin.sgi",
                                u8"orvin-no-dot", u8"orvin.tga.d"}) {
        EXPECT_EQ(loadImage(copy("colour-rle.tga", name), image), kFailure) << image.path();
        EXPECT_EQ(image.kind(), PixelKind::kNone);
        EXPECT_EQ(image.path(), "");
    }
    EXPECT_EQ(loadImage("orvin-nowhere\xff.tga", image), kFailure);
    EXPECT_EQ(loadImage(folder.path().string(), image), kFailure);
}

}  // namespace
}  // namespace orvin
