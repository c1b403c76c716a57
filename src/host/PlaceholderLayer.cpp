#include "host/PlaceholderLayer.h"

#include <cstdint>
#include <memory>
#include <vector>

#include "render/image/ImageCache.h"

namespace orvin {

namespace {

constexpr int kSide = 64;
constexpr int kCheck = 8;
constexpr std::uint8_t kLight = 176;
constexpr std::uint8_t kDark = 112;

}  // namespace

void installPlaceholderLayer() {
    ImageBuffer checks(kSide, kSide, PixelKind::kRgb);
    std::vector<std::uint8_t> row(checks.rowBytes());
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            const bool light = (x / kCheck + y / kCheck) % 2 == 0;
            for (int c = 0; c < 3; ++c)
                row[static_cast<std::size_t>(3 * x + c)] = light ? kLight : kDark;
        }
        checks.writeRow(y, std::span<const std::uint8_t>(row));
    }
    auto image = std::make_unique<SummedImage>(checks);
    image->setPath(std::string(kPlaceholderLayer));
    addLayerImage(kPlaceholderLayer, std::move(image));
}

}  // namespace orvin
