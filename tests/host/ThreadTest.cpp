// Commands from more than one thread, as hosts send them that render beside their user interface.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "host/OrvinApp.h"
#include "host/SequenceRecord.h"
#include "tests/host/FakeHost.h"
#include "tests/host/ScriptedUser.h"

namespace orvin {
namespace {

OrvinApp* appOf(PF_Handle handle) {
    return static_cast<SequenceRecord*>(*handle)->app;
}

TEST(Threads, ACommandOfAnotherThreadWaitsForItsTurn) {
    FakeHost host;
    ScriptedUser user;
    std::atomic<bool> started = false;
    std::atomic<bool> served = false;
    std::thread renderThread;
    user.whileAsked = [&] {
        // A command is being served on this thread: the other one's must neither run nor be lost.
        renderThread = std::thread([&] {
            PF_OutData out{};
            PF_Handle none = nullptr;
            started = true;
            EXPECT_EQ(host.call(PF_Cmd_ABOUT, none, out, nullptr), 0);
            EXPECT_NE(out.return_msg[0], '\0') << "the command was dropped";
            served = true;
        });
        while (!started)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        EXPECT_FALSE(served);
    };
    PF_Handle sequence = nullptr;
    PF_OutData out{};
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_SETUP, sequence, out, nullptr), 0);
    renderThread.join();
    EXPECT_TRUE(served);
    host.call(PF_Cmd_SEQUENCE_SETDOWN, sequence, out, nullptr);
    EXPECT_EQ(host.handleCount(), 0U);
}

TEST(Threads, TheStashBelongsToTheThreadThatFlattened) {
    FakeHost host;
    ScriptedUser user;
    PF_Handle sequence = nullptr;
    host.call(PF_Cmd_SEQUENCE_SETUP, sequence);
    const OrvinApp* app = appOf(sequence);
    host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence);

    // The host's render thread gets a copy of the project first.
    PF_Handle copy = host.handleOf(host.bytesOf(sequence));
    std::thread([&] {
        EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, copy), 0);
        EXPECT_NE(appOf(copy), app);
    }).join();
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 0);
    EXPECT_EQ(appOf(sequence), app);

    host.call(PF_Cmd_SEQUENCE_SETDOWN, sequence);
    host.call(PF_Cmd_SEQUENCE_SETDOWN, copy);
    EXPECT_EQ(host.handleCount(), 0U);
    EXPECT_EQ(host.mistakes, std::vector<std::string>{});
}

TEST(Threads, ManyInstancesLiveSideBySide) {
    FakeHost host;
    ScriptedUser user;
    std::atomic<int> kept = 0;
    const auto life = [&] {
        for (int round = 0; round < 5; ++round) {
            PF_OutData out{};
            PF_Handle sequence = nullptr;
            if (host.call(PF_Cmd_SEQUENCE_SETUP, sequence, out, nullptr) != 0) return;
            const OrvinApp* app = appOf(sequence);
            host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence, out, nullptr);
            host.call(PF_Cmd_ABOUT, sequence, out, nullptr);
            host.call(PF_Cmd_SEQUENCE_RESETUP, sequence, out, nullptr);
            if (appOf(sequence) == app) ++kept;
            host.call(PF_Cmd_SEQUENCE_SETDOWN, sequence, out, nullptr);
        }
    };
    std::thread first(life);
    std::thread second(life);
    first.join();
    second.join();
    EXPECT_EQ(kept, 10);
    EXPECT_EQ(host.handleCount(), 0U);
    EXPECT_EQ(host.mistakes, std::vector<std::string>{});
}

}  // namespace
}  // namespace orvin
