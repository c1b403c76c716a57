#include "render/PixelTree.h"

#include <bit>

namespace orvin {

// Layers are worked through without recursion, as a scene decides how many there are. Groups of a
// layer have no subpixel in common, so one array holds the fronts of all that is still to do.
bool PixelTree::build(const VisibilityTile& tile, int pixelX, int pixelY) {
    setGrid(tile.subpixels());
    x0_ = pixelX * n_;
    y0_ = pixelY * n_;
    nodes_.clear();

    const std::uint32_t whole = (1U << static_cast<unsigned>(n_ * n_)) - 1;
    std::uint32_t filled = 0;
    bool oneOpaque = true;
    const SampleNode& first = *tile.row(x0_, y0_);
    std::size_t slot = 0;
    for (int y = 0; y < n_; ++y) {
        const SampleNode* head = tile.row(x0_, y0_ + y);
        for (int x = 0; x < n_; ++x, ++head, ++slot) {
            samples_[slot] = head;
            if (!head->empty()) filled |= 1U << slot;
            oneOpaque = oneOpaque && head->sameOpaque(first);
        }
    }
    if (filled == 0) return false;
    if (oneOpaque && filled == whole) {
        const int sum = n_ * n_ * (n_ - 1) / 2;
        addNode(tile, first.triangle(), {n_ * n_, sum, sum});
        return true;
    }

    pending_.clear();
    pending_.push_back({filled, PixelNode::kNone});
    while (!pending_.empty()) {
        auto [rest, parent] = pending_.back();
        pending_.pop_back();
        std::uint32_t previous = PixelNode::kNone;
        while (rest != 0) {
            const std::uint32_t triangle =
                samples_[static_cast<std::size_t>(std::countr_zero(rest))]->triangle();
            Group group;
            std::uint32_t grouped = 0;
            std::uint32_t hidden = 0;
            for (std::uint32_t todo = rest; todo != 0; todo &= todo - 1) {
                const auto subpixel = static_cast<std::size_t>(std::countr_zero(todo));
                const SampleNode*& sample = samples_[subpixel];
                if (sample->triangle() != triangle) continue;
                ++group.count;
                group.columns += columns_[subpixel];
                group.rows += rows_[subpixel];
                grouped |= 1U << subpixel;
                sample = tile.behind(*sample);
                if (sample != nullptr) hidden |= 1U << subpixel;
            }
            rest &= ~grouped;
            const std::uint32_t node = addNode(tile, triangle, group);
            if (previous != PixelNode::kNone)
                nodes_[previous].others = node;
            else if (parent != PixelNode::kNone)
                nodes_[parent].behind = node;
            if (hidden != 0) pending_.push_back({hidden, node});
            previous = node;
        }
    }
    return true;
}

void PixelTree::setGrid(int side) {
    if (side == n_) return;
    n_ = side;
    for (int i = 0; i < side * side; ++i) {
        columns_[static_cast<std::size_t>(i)] = i % side;
        rows_[static_cast<std::size_t>(i)] = i / side;
    }
}

std::uint32_t PixelTree::addNode(const VisibilityTile& tile, std::uint32_t triangle,
                                 const Group& group) {
    const double cx = static_cast<double>(group.columns) / group.count + x0_ + 0.5;
    const double cy = static_cast<double>(group.rows) / group.count + y0_ + 0.5;
    const Barycentric at = barycentricAt(tile.triangle(triangle), tile.perspective(), cx, cy);
    PixelNode node;
    node.triangle = triangle;
    node.coverage = static_cast<float>(group.count) / static_cast<float>(n_ * n_);
    node.u = static_cast<float>(at.u);
    node.v = static_cast<float>(at.v);
    nodes_.push_back(node);
    return static_cast<std::uint32_t>(nodes_.size() - 1);
}

}  // namespace orvin
