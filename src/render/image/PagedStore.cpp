#include "render/image/PagedStore.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "toolkit/Errors.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

constexpr int tilesFor(int pixels) {
    return static_cast<int>((std::int64_t{pixels} + PagedStore::kTileSide - 1) /
                            PagedStore::kTileSide);
}

}  // namespace

PagedStore::PagedStore(int width, int height, std::size_t pixelBytes, std::size_t maxTiles,
                       File file)
    : tilesAcross_(tilesFor(width)),
      tileBytes_(kTilePixels * pixelBytes),
      maxTiles_(std::clamp<std::size_t>(maxTiles, 1, INT32_MAX)),
      tiles_(static_cast<std::size_t>(tilesAcross_) * static_cast<std::size_t>(tilesFor(height))),
      file_(std::move(file)) {
    if (!file_) throw kImageBufferFailed;
    // Tiles are moved whole, so a buffer of stdio's would only copy them once more.
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);
    const std::size_t slots = std::min(maxTiles_, tiles_.size());
    slotBytes_.reserve(slots);
    slotTile_.reserve(slots);
    slotLastUse_.reserve(slots);
    const std::vector<std::uint8_t> zeros(tileBytes_);
    for (std::size_t i = 0; i < tiles_.size(); ++i)
        if (std::fwrite(zeros.data(), 1, zeros.size(), file_.get()) != zeros.size())
            throw kImageBufferFailed;
}

std::uint8_t* PagedStore::tile(int column, int row, bool forWriting) {
    const std::size_t index =
        static_cast<std::size_t>(row) * static_cast<std::size_t>(tilesAcross_) +
        static_cast<std::size_t>(column);
    Tile& wanted = tiles_[index];
    if (wanted.slot == kNotResident) {
        const std::int32_t slot = freeSlot();
        if (slot == kNotResident) return nullptr;
        const auto s = static_cast<std::size_t>(slot);
        if (!wanted.written) {
            std::memset(slotBytes_[s].get(), 0, tileBytes_);
        } else if (!moveTile(index, slotBytes_[s].get(), false)) {
            return nullptr;  // the slot stays free
        }
        slotTile_[s] = index;
        wanted.slot = slot;
    }
    const auto s = static_cast<std::size_t>(wanted.slot);
    slotLastUse_[s] = ++clock_;
    wanted.dirty |= forWriting;
    return slotBytes_[s].get();
}

// A slot that holds no tile: a new one while there may be more, otherwise the one used longest ago,
// its tile saved. A free slot has last use 0, so it is always the first to be taken again.
std::int32_t PagedStore::freeSlot() {
    if (slotBytes_.size() < std::min(maxTiles_, tiles_.size())) {
        slotBytes_.push_back(std::make_unique<std::uint8_t[]>(tileBytes_));
        slotTile_.push_back(tiles_.size());
        slotLastUse_.push_back(0);
        return static_cast<std::int32_t>(slotBytes_.size() - 1);
    }
    const auto oldest = std::min_element(slotLastUse_.begin(), slotLastUse_.end());
    const auto s = static_cast<std::size_t>(oldest - slotLastUse_.begin());
    if (slotTile_[s] < tiles_.size()) {
        Tile& old = tiles_[slotTile_[s]];
        if (old.dirty) {
            if (!moveTile(slotTile_[s], slotBytes_[s].get(), true)) return kNotResident;
            old.dirty = false;
            old.written = true;
        }
        old.slot = kNotResident;
        slotTile_[s] = tiles_.size();
        *oldest = 0;
    }
    return static_cast<std::int32_t>(s);
}

bool PagedStore::moveTile(std::size_t index, std::uint8_t* bytes, bool toFile) {
    if (platform::seek(file_.get(), std::uint64_t{index} * tileBytes_) != 0) return false;
    return (toFile ? std::fwrite(bytes, 1, tileBytes_, file_.get())
                   : std::fread(bytes, 1, tileBytes_, file_.get())) == tileBytes_;
}

}  // namespace orvin
