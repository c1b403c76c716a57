// TileGrid: how a picture is cut into tiles.
#pragma once

#include <cstddef>

#include "render/VisibilityTile.h"
#include "scene/RenderParams.h"

namespace orvin {

/// Tiles are numbered column after column. Those of the last column and row are cut to the picture.
class TileGrid {
  public:
    /// No more tiles than this: beyond it they grow, whatever the parameters ask for.
    static constexpr int kMaxTiles = 1 << 16;

    /// `subWidth` x `subHeight` subpixels; maxTileArea is in pixels.
    TileGrid(int subWidth, int subHeight, int maxTileArea, int subpixels);

    int columns() const { return columns_; }
    int rows() const { return rows_; }
    std::size_t count() const {
        return static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_);
    }
    std::size_t index(int column, int row) const {
        return static_cast<std::size_t>(column) * static_cast<std::size_t>(rows_) +
               static_cast<std::size_t>(row);
    }
    /// In subpixels.
    GridRect rect(std::size_t index) const;

    /// The tiles (columns and rows) that a triangle's box overlaps, by the centres of subpixels
    /// that it may cover; empty (right below left, or bottom below top) outside the picture.
    GridRect overlapped(double xMin, double xMax, double yMin, double yMax) const;

  private:
    int subWidth_;
    int subHeight_;
    int side_;
    int columns_;
    int rows_;
};

}  // namespace orvin
