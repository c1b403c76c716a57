// Lines cost no allocation, read or written: undo snapshots and saved sequences are made of them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "scene/FileStream.h"
#include "scene/HandleStream.h"
#include "toolkit/platform/Platform.h"

// The sanitizers bring allocators of their own.
#ifndef __SANITIZE_ADDRESS__

namespace {
std::size_t gAllocations = 0;
}

// Not inlined: where one of a pair is and the other isn't, the compiler warns of free() on what new
// has made.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++gAllocations;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace orvin {
namespace {

constexpr int kLines = 20000;

struct Points : Persistent {
    Result writeBody(SceneStream& stream) override {
        for (int i = 0; i < kLines; ++i) {
            stream.putVector("v", {i * 0.5, -1e6 * i, 3.25});
            stream.putText("text", "with \"quotes\" and more than fits into a short string");
            stream.putInt("n", i);
        }
        return kSuccess;
    }
    const CommandRegistry& commandRegistry() const override {
        static const auto kCommands = [] {
            auto commands = std::make_unique<CommandRegistry>();
            commands->lookupOrInsert("v", [](SceneStream& stream, Persistent& self) {
                ++static_cast<Points&>(self).lines;
                Vec3 point;
                return stream.readVector3(point);
            });
            commands->lookupOrInsert("text", [](SceneStream& stream, Persistent& self) {
                return stream.readText(static_cast<Points&>(self).text);
            });
            commands->lookupOrInsert("n", [](SceneStream& stream, Persistent&) {
                int number = 0;
                return stream.readInt(number);
            });
            return commands;
        }();
        return *kCommands;
    }
    std::string_view className() const override { return "Points"; }

    int lines = 0;
    std::string text;
};

// Writes, then reads; returns the allocations of both.
template <typename Write, typename Read>
void expectNoAllocations(Points& points, SceneStream& out, Write&& finish, Read&& openReader) {
    points.commandRegistry();  // made at first use
    std::size_t before = gAllocations;
    ASSERT_EQ(points.writeBody(out), kSuccess);
    ASSERT_EQ(finish(), kSuccess);
    EXPECT_EQ(gAllocations - before, 0U) << "writing";

    SceneStream& in = openReader();
    points.text.reserve(200);
    before = gAllocations;
    while (in.hasMore() && in.runTopCommand() == kSuccess) {
    }
    EXPECT_EQ(gAllocations - before, 0U) << "reading";
    EXPECT_EQ(points.lines, kLines);
}

TEST(Allocations, NoneForALineOfAHandle) {
    PlainHandleMemory memory;
    const Handle handle = memory.allocate(8 << 20);
    Points points;
    HandleStream out(memory, &points);
    ASSERT_EQ(out.openWrite(handle, 0), kSuccess);
    HandleStream in(memory, &points);
    expectNoAllocations(
        points, out, [] { return kSuccess; },
        [&]() -> SceneStream& {
            out.finish();
            in.openRead(handle, 0);
            return in;
        });
}

TEST(Allocations, NoneForALineOfAFile) {
    std::FILE* const file = platform::openTemporaryFile();
    ASSERT_NE(file, nullptr);
    std::fputs("#", file);  // stdio's own buffer is made now
    std::fputs("\n", file);
    Points points;
    FileStream out(&points, nullptr, file);
    FileStream in(&points, file, nullptr, FileStream::Files::kOwn);
    expectNoAllocations(
        points, out, [&] { return out.flush(); },
        [&]() -> SceneStream& {
            std::rewind(file);
            return in;
        });
}

}  // namespace
}  // namespace orvin

#endif
