#include "scene/Thumbnail.h"

#include <array>
#include <span>
#include <string_view>

namespace orvin {

namespace {

using RowBuffer = std::array<std::uint8_t, kLineCapacity>;

std::size_t rgbBytes(const twPicture& picture) {
    return static_cast<std::size_t>(picture.width()) * 3;
}

int digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool parseHex(std::string_view digits, std::span<std::uint8_t> bytes) {
    if (digits.size() != bytes.size() * 2) return false;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const int high = digit(digits[2 * i]);
        const int low = digit(digits[2 * i + 1]);
        if (high < 0 || low < 0) return false;
        bytes[i] = static_cast<std::uint8_t>(high * 16 + low);
    }
    return true;
}

// Four bytes a pixel to three: the first goes.
void dropFirsts(std::span<std::uint8_t> bytes) {
    for (std::size_t in = 0, out = 0; in + 3 < bytes.size(); in += 4, out += 3)
        for (std::size_t c = 0; c < 3; ++c)
            bytes[out + c] = bytes[in + 1 + c];
}

// R, G, B to B, G, R, and back.
void turnPixels(std::span<std::uint8_t> bytes) {
    for (std::size_t i = 0; i + 2 < bytes.size(); i += 3)
        std::swap(bytes[i], bytes[i + 2]);
}

}  // namespace

Result writeThumbnail(SceneStream& stream, const twPicture& picture, ThumbnailForm form) {
    if (picture.empty()) return kSuccess;
    const bool text = form == ThumbnailForm::kText;
    const std::size_t bytes = rgbBytes(picture);
    if (bytes * (text ? 2 : 1) > kThumbnailRowLimit) return kFailure;
    stream.line()
        .clear()
        .text("ThumbnailSize ")
        .whole(picture.width())
        .character(' ')
        .whole(picture.height());
    if (stream.putLine() != kSuccess) return kFailure;
    stream.line().clear().text(text ? "Thumbnail" : "BinaryThumbnail");
    if (stream.putLine() != kSuccess) return kFailure;

    RowBuffer buffer;
    const auto row = std::span(buffer).first(bytes);
    for (int y = 0; y < picture.height(); ++y) {
        picture.readRgbRow(y, row);
        Result result = kSuccess;
        if (text) {
            stream.line().clear().hex(row);
            result = stream.putLine();
        } else {
            turnPixels(row);
            result = stream.writeBytes(row);
        }
        if (result != kSuccess) return kFailure;
    }
    return kSuccess;
}

Result readThumbnailSize(SceneStream& stream, ThumbnailSize& size) {
    ThumbnailSize read;
    if (stream.readInt(read.width) != kSuccess || stream.readInt(read.height) != kSuccess)
        return kFailure;
    constexpr int kLimit = static_cast<int>(kThumbnailRowLimit);
    if (read.width > kLimit / 3 || read.height > kLimit) return kFailure;
    size = read;
    return kSuccess;
}

std::unique_ptr<twPicture> readThumbnail(SceneStream& stream, ThumbnailSize size,
                                         ThumbnailForm form, bool fromOtherPlatform) {
    if (size.width <= 0 || size.height <= 0) return nullptr;
    const bool text = form == ThumbnailForm::kText;
    const std::size_t bytes = static_cast<std::size_t>(size.width) * (fromOtherPlatform ? 4 : 3);
    if (bytes * (text ? 2 : 1) > kThumbnailRowLimit) return nullptr;

    auto picture = std::make_unique<twPicture>(size.width, size.height);
    RowBuffer buffer;
    const auto stored = std::span(buffer).first(bytes);
    const auto row = std::span(buffer).first(rgbBytes(*picture));
    for (int y = 0; y < size.height; ++y) {
        if (text) {
            std::string_view token;
            if (stream.nextToken(token) != kSuccess || !parseHex(token, stored)) return nullptr;
        } else if (stream.readBytes(stored) != kSuccess) {
            return nullptr;
        }
        if (fromOtherPlatform) {
            dropFirsts(stored);
        } else if (!text) {
            turnPixels(row);
        }
        picture->writeRgbRow(y, row);
    }
    return picture;
}

}  // namespace orvin
