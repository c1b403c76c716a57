// What a model takes while it is read until its objects stand in the scene, at its peak, of files
// that ask for the most: all memory of the program is counted.
//
// The sanitizers count memory themselves and see less where somebody else does: not with them.
#ifndef __SANITIZE_ADDRESS__

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "interchange/ModelFormats.h"
#include "tests/interchange/ChunkText.h"
#include "tests/interchange/ModelFixture.h"

namespace {

std::atomic<std::size_t> taken{0};
std::atomic<std::size_t> peak{0};

constexpr std::size_t kHead = alignof(std::max_align_t);  // in front of each block: its size

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
    void* const block = std::malloc(size + kHead);
    if (block == nullptr) throw std::bad_alloc();
    *static_cast<std::size_t*>(block) = size;
    const std::size_t now = taken += size;
    if (now > peak) peak = now;
    return static_cast<std::byte*>(block) + kHead;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    if (memory == nullptr) return;
    void* const block = static_cast<std::byte*>(memory) - kHead;
    taken -= *static_cast<std::size_t*>(block);
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace orvin {
namespace {

using ImportMemory = ModelFiles;

constexpr int kSide = 150;  // points of a grid

std::string repeated(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

/// The cells of a grid, each as `cell` gives it from the number of its first point.
template <typename Cell>
std::string cells(Cell&& cell) {
    std::string all;
    for (int y = 0; y + 1 < kSide; ++y)
        for (int x = 0; x + 1 < kSide; ++x)
            all += cell(y * kSide + x);
    return all;
}

std::string points(std::string (*number)(double), const std::string& start) {
    std::string all;
    for (int i = 0; i < kSide * kSide; ++i)
        all += start + number(i % kSide) + number(i / kSide) + number(0.001 * (i % 7));
    return all;
}

std::string objGrid(bool groups) {
    const auto number = [](double value) { return " " + std::to_string(value); };
    std::string text = points(number, "\nv");
    int row = -1;
    return text + '\n' + cells([&](int i) {
               std::string face = "f";
               for (const int corner : {i, i + 1, i + kSide + 1, i + kSide})
                   face += ' ' + std::to_string(corner + 1);
               const bool starts = groups && i / kSide / 25 != row;
               row = i / kSide / 25;
               return (starts ? "g g" + std::to_string(row) + "\n" : "") + face + '\n';
           });
}

/// Triangles in pairs with a line between them; with `seams` each corner has texture coordinates,
/// which differ at every eighth cell.
std::string lightWave(bool lines, bool seams) {
    std::string faces;
    std::string map = "TXUV" + u16(2) + text("map");
    std::string own = map;
    int polygon = 0;
    for (int i = 0; i < kSide * kSide; ++i)
        map += u16(i) + f32(i * 0.5) + f32(0.25);
    faces = cells([&](int i) {
        const auto triangle = [&](int a, int b, int c) {
            for (const int corner : {a, b, c})
                own += u16(corner) + u16(polygon) + f32(corner * 0.5) +
                       f32(polygon / 2 % 8 == 0 ? polygon : 0.25);
            ++polygon;
            return u16(3) + u16(a) + u16(b) + u16(c);
        };
        const std::string first = triangle(i, i + kSide, i + 1);
        if (lines) ++polygon;
        return first + (lines ? u16(2) + u16(i) + u16(i + 1) : "") +
               triangle(i + 1, i + kSide, i + kSide + 1);
    });
    std::string chunks = chunk("PNTS", points([](double v) { return f32(v); }, ""));
    if (seams) chunks += chunk("VMAP", map);
    chunks += chunk("POLS", "FACE" + faces);
    if (seams) chunks += chunk("VMAD", own);
    return form("LWO2", chunks);
}

std::string dxf(int faces, bool coordinates) {
    std::string text = "0\nSECTION\n2\nENTITIES\n";
    int x = 0;
    for (int i = 0; i < faces; ++i) {
        text += "0\n3DFACE\n";
        for (int corner = 10; coordinates && corner < 14; ++corner)
            text += std::to_string(corner) + '\n' + std::to_string(++x) + '\n';
    }
    return text;
}

TEST_F(ImportMemory, IsAtMostThreeTimesTheFile) {
    const std::string fact =
        chunk("CORD", points([](double v) { return f32(v); }, "")) +
        chunk("ELEM", cells([](int i) {
                  return std::string("\0\0\0\0", 4) + u32(4) + u32(static_cast<unsigned>(i)) +
                         u32(static_cast<unsigned>(i) + 1) + u32(static_cast<unsigned>(i) + 2) +
                         u32(static_cast<unsigned>(i) + 3);
              }));
    const struct {
        const char* name;
        std::string content;
    } cases[] = {
        {"points.obj", "v 1 2 3\n" + repeated(200000, "p 1\n")},
        {"onePolygon.obj", "v 1 2 3\nf" + repeated(400000, " 1") + '\n'},
        {"quads.obj", objGrid(false)},
        {"groups.obj", objGrid(true)},
        {"bare.dxf", dxf(90000, false)},
        {"points.dxf", dxf(30000, true)},
        {"triangles.lwo", lightWave(false, false)},
        {"lines.lwo", lightWave(true, false)},
        {"seams.lwo", lightWave(false, true)},
        {"grid.fac", form("3DFL", form("GRUP", fact))},
    };
    for (const auto& c : cases) {
        const fs::path path = file(c.name, c.content);
        SceneX scene;
        const std::size_t before = taken;
        peak = before;
        std::vector<ObjectP*> made;
        ASSERT_EQ(importModel(scene, path, &made), kSuccess) << c.name;
        const auto most = static_cast<double>(peak - before);
        ASSERT_FALSE(made.empty()) << c.name;
        std::uint32_t revision = 0;
        EXPECT_GT(made[0]->mesh(1, revision)->faceCount(), 0) << c.name;
        EXPECT_LE(most, 3.0 * static_cast<double>(c.content.size())) << c.name;
    }
}

}  // namespace
}  // namespace orvin

#endif
