#include "render/VisibilityTile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>

#include "render/PixelTree.h"

namespace orvin {
namespace {

ScreenTriangle flat(Vec2 a, Vec2 b, Vec2 c, double depth, bool opaque) {
    ScreenTriangle t;
    t.corners = {a, b, c};
    t.yMin = std::min({a.y, b.y, c.y});
    t.yMax = std::max({a.y, b.y, c.y});
    t.depth = {0.0, 0.0, depth};
    t.id.flags = opaque ? TriangleId::kOpaque : 0U;
    return t;
}

// Covers the whole of a 12 x 12 grid.
ScreenTriangle sheet(double depth, bool opaque) {
    return flat({-1, -1}, {30, -1}, {-1, 30}, depth, opaque);
}

struct Scan {
    explicit Scan(std::vector<ScreenTriangle> t, int n = 3, GridRect rect = {0, 0, 11, 11},
                  bool perspective = false)
        : triangles(std::move(t)), indices(triangles.size()) {
        std::iota(indices.begin(), indices.end(), 0U);
        tile.scan(triangles, indices, rect, n, perspective);
    }

    /// Triangles at a subpixel from front to back: "0 2".
    std::string list(int x, int y) const {
        std::string text;
        const SampleNode* node = tile.row(x, y);
        if (node->empty()) return text;
        for (; node != nullptr; node = tile.behind(*node))
            text += (text.empty() ? "" : " ") + std::to_string(node->triangle());
        return text;
    }
    std::vector<std::string> picture(int width, int height) const {
        std::vector<std::string> rows;
        for (int y = 0; y < height; ++y) {
            rows.emplace_back();
            for (int x = 0; x < width; ++x)
                rows.back() += list(x, y).empty() ? '.' : '#';
        }
        return rows;
    }

    std::vector<ScreenTriangle> triangles;
    std::vector<std::uint32_t> indices;
    VisibilityTile tile;
};

using Picture = std::vector<std::string>;

TEST(VisibilityTile, CoversTheSubpixelsWhoseCentresLieInside) {
    const Scan scan({flat({1.0, 1.0}, {5.0, 1.0}, {1.0, 5.0}, 1.0, true)}, 1, {0, 0, 5, 5});
    // A row's last column is the one before the rounded end of its span: centres on the long side
    // itself (x + y = 6) are in.
    EXPECT_EQ(scan.picture(6, 6),
              (Picture{"......", ".####.", ".###..", ".##...", ".#....", "......"}));
}

TEST(VisibilityTile, TruncatesTowardsZeroAtTheLeftAndLowerEdge) {
    // Half a subpixel outside, and still there: -0.5 truncates to 0.
    const Scan left({flat({-3.0, 1.0}, {0.2, 1.0}, {0.2, 4.0}, 1.0, true)}, 1, {0, 0, 3, 3});
    EXPECT_EQ(left.picture(4, 4), (Picture{"....", "#...", "#...", "#..."}));
    const Scan gone({flat({-9.0, 1.0}, {-1.6, 1.0}, {-1.6, 4.0}, 1.0, true)}, 1, {0, 0, 3, 3});
    EXPECT_EQ(gone.picture(4, 4), (Picture{"....", "....", "....", "...."}));
}

TEST(VisibilityTile, SortsListsByTheRulesOfOpacity) {
    struct Case {
        const char* what;
        std::vector<ScreenTriangle> sheets;
        const char* expected;
    };
    const Case cases[] = {
        {"transparent sheets by depth",
         {sheet(3, false), sheet(1, false), sheet(2, false)},
         "1 2 0"},
        {"of equal depths the earlier is in front", {sheet(1, false), sheet(1, false)}, "0 1"},
        {"equal opaque: the later is lost", {sheet(1, true), sheet(1, true)}, "0"},
        {"opaque cuts off what lies behind",
         {sheet(1, false), sheet(3, false), sheet(4, false), sheet(2, true)},
         "0 3"},
        {"nothing enters behind an opaque one",
         {sheet(2, true), sheet(3, false), sheet(3, true)},
         "0"},
        {"transparent before opaque", {sheet(2, true), sheet(1, false)}, "1 0"},
        {"opaque appended, then hidden", {sheet(1, false), sheet(5, true), sheet(2, true)}, "0 2"},
        {"transparent behind transparent, in front of opaque",
         {sheet(1, false), sheet(5, true), sheet(2, false)},
         "0 2 1"},
        {"equal to an opaque one: discarded",
         {sheet(1, false), sheet(2, true), sheet(2, false)},
         "0 1"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Scan(c.sheets).list(4, 4), c.expected) << c.what;
}

TEST(VisibilityTile, PerspectiveDepthIsTheReciprocalAndEndsAtTheHorizon) {
    // 1/depth falls to 0 at the centre of column 4 and the row ends there.
    ScreenTriangle t = sheet(0.0, false);
    t.depth = {-0.5, 0.0, 2.25};
    const Scan scan({t}, 1, {0, 0, 11, 11}, true);
    EXPECT_EQ(scan.picture(8, 1), (Picture{"####...."}));
    EXPECT_FLOAT_EQ(scan.tile.row(0, 0)->depth(), 0.5F);
    EXPECT_FLOAT_EQ(scan.tile.row(3, 0)->depth(), 2.0F);
}

TEST(PixelTree, GroupsByTriangleAndLayer) {
    // In pixel (0, 0): triangle 0 (transparent) on columns 0 and 1, triangle 1 (opaque) behind it
    // on all three columns.
    ScreenTriangle front = flat({-9, -9}, {2, -9}, {2, 60}, 1.0, false);
    front.corners[0].x = -60;
    front.u = {1.0, 0.0, 0.0};
    const Scan scan({front, sheet(2.0, true)});
    ASSERT_EQ(scan.list(1, 1), "0 1");
    ASSERT_EQ(scan.list(2, 1), "1");
    PixelTree tree;
    ASSERT_TRUE(tree.build(scan.tile, 0, 0));
    const PixelNode& root = tree.node(PixelTree::kRoot);
    EXPECT_EQ(root.triangle, 0U);
    EXPECT_FLOAT_EQ(root.coverage, 6.0F / 9.0F);
    EXPECT_FLOAT_EQ(root.u, 1.0F);  // between columns 0 and 1
    ASSERT_NE(root.behind, PixelNode::kNone);
    EXPECT_EQ(tree.node(root.behind).triangle, 1U);
    EXPECT_FLOAT_EQ(tree.node(root.behind).coverage, 6.0F / 9.0F);
    ASSERT_NE(root.others, PixelNode::kNone);
    EXPECT_EQ(tree.node(root.others).triangle, 1U);
    EXPECT_FLOAT_EQ(tree.node(root.others).coverage, 3.0F / 9.0F);
    EXPECT_EQ(tree.node(root.others).behind, PixelNode::kNone);
}

TEST(PixelTree, CountsEveryFragmentOnce) {
    // Random transparent and opaque triangles: the coverages of all nodes add up to the fragments
    // of the pixel's lists, whatever the grid.
    unsigned seed = 1;
    const auto next = [&seed] {
        seed = seed * 1664525U + 1013904223U;
        return (seed >> 8) / double(1 << 24);
    };
    for (int n = 1; n <= 5; ++n) {
        std::vector<ScreenTriangle> triangles;
        for (int i = 0; i < 40; ++i)
            triangles.push_back(flat({next() * 20 - 4, next() * 20 - 4},
                                     {next() * 20 - 4, next() * 20 - 4},
                                     {next() * 20 - 4, next() * 20 - 4}, next(), next() < 0.2));
        const Scan scan(triangles, n, {0, 0, 4 * n - 1, 4 * n - 1});
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 4; ++x) {
                std::size_t fragments = 0;
                for (int sy = 0; sy < n; ++sy)
                    for (int sx = 0; sx < n; ++sx) {
                        const SampleNode* node = scan.tile.row(x * n + sx, y * n + sy);
                        if (node->empty()) node = nullptr;
                        for (; node != nullptr; node = scan.tile.behind(*node))
                            ++fragments;
                    }
                PixelTree tree;
                ASSERT_EQ(tree.build(scan.tile, x, y), fragments > 0);
                float sum = 0.0F;
                for (const PixelNode& node : tree.nodes())
                    sum += node.coverage * static_cast<float>(n * n);
                EXPECT_NEAR(sum, static_cast<float>(fragments), 1e-3F);
            }
    }
}

}  // namespace
}  // namespace orvin
