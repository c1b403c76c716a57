// PagedStore: a picture in a temporary file, in tiles of 50 x 50 pixels, of which a limited number
// is in memory. The tile that was used longest ago makes room for the next one.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

namespace orvin {

class PagedStore {
  public:
    static constexpr int kTileSide = 50;  // pixels
    static constexpr std::size_t kTilePixels = std::size_t{kTileSide} * kTileSide;

    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, CloseFile>;

    /// Writes the whole file with zeros: a full disk shows here and not in the middle of a picture.
    /// `maxTiles` (at least 1) tiles are kept in memory. Throws eBaseError 101 where there is no
    /// file or it can't be written.
    PagedStore(int width, int height, std::size_t pixelBytes, std::size_t maxTiles, File file);

    /// The tile of a column and row of tiles: kTileSide rows of kTileSide pixels, also at the right
    /// and the upper edge of the picture. Valid until the next call. `forWriting` marks it as
    /// changed. Null where the file can't be read, or the tile that has to make room not written;
    /// that one then stays in memory, nothing is lost.
    std::uint8_t* tile(int column, int row, bool forWriting);

  private:
    static constexpr std::int32_t kNotResident = -1;

    struct Tile {
        std::int32_t slot = kNotResident;
        bool dirty = false;    // differs from the file
        bool written = false;  // the file holds more than zeros for it
    };

    std::int32_t freeSlot();
    bool moveTile(std::size_t index, std::uint8_t* bytes, bool toFile);

    int tilesAcross_;
    std::size_t tileBytes_;
    std::size_t maxTiles_;
    std::vector<Tile> tiles_;
    // Slots, by slot index. Their memory comes as they are first needed.
    std::vector<std::unique_ptr<std::uint8_t[]>> slotBytes_;
    std::vector<std::size_t> slotTile_;
    std::vector<std::uint64_t> slotLastUse_;
    std::uint64_t clock_ = 0;
    File file_;
};

}  // namespace orvin
