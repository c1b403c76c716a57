#include "host/SuiteSet.h"

#include <gtest/gtest.h>

#include <new>

#include "host/Failure.h"
#include "host/HostProgress.h"
#include "host/HostState.h"
#include "tests/host/FakeHost.h"
#include "toolkit/Errors.h"
#include "toolkit/Progress.h"

namespace orvin {
namespace {

using Log = std::vector<std::string>;

TEST(SuiteSet, FetchesOnceOnFirstUseAndGivesBackAtTheEnd) {
    FakeHost host;
    AEGP_LightSuite1 light{};
    host.suites[{"AEGP Light Suite", 1}] = &light;
    {
        SuiteSet suites(host.inData().pica_basicP);
        EXPECT_EQ(host.suiteLog, Log{});
        EXPECT_EQ(&suites.light(), &light);
        EXPECT_EQ(&suites.light(), &light);
        EXPECT_EQ(host.suiteLog, Log{"+AEGP Light Suite 1"});
    }
    EXPECT_EQ(host.suiteLog, (Log{"+AEGP Light Suite 1", "-AEGP Light Suite 1"}));
}

TEST(SuiteSet, ParamUtilsComeInThreeVersionsAndGoUnderAnotherName) {
    for (const int offered : {1, 2, 3}) {
        FakeHost host;
        PF_ParamUtilsSuite utils{};
        host.suites[{"PF Param Utils Suite", offered}] = &utils;
        {
            SuiteSet suites(host.inData().pica_basicP);
            EXPECT_EQ(&suites.paramUtils(), &utils);
        }
        EXPECT_EQ(host.suiteLog, (Log{"+PF Param Utils Suite " + std::to_string(offered),
                                      "-PF Path Data Suite 1"}));
    }
    FakeHost host;
    PF_ParamUtilsSuite second{};
    PF_ParamUtilsSuite third{};
    host.suites[{"PF Param Utils Suite", 2}] = &second;
    host.suites[{"PF Param Utils Suite", 3}] = &third;
    EXPECT_EQ(&SuiteSet(host.inData().pica_basicP).paramUtils(), &third);
}

TEST(SuiteSet, EverySlotAsksForItsOwnSuite) {
    FakeHost host;
    const int table = 0;
    // A few by hand, beside those that the accessors name.
    host.suites[{"AEGP Comp Suite", 6}] = &table;
    host.suites[{"PF Path Data Suite", 1}] = &table;
    host.suites[{"PF iterate16 Suite", 1}] = &table;
    host.suites[{"AEGP Collection Suite", 1}] = &table;
    SuiteSet suites(host.inData().pica_basicP);
    for (const int slot : {1, 26, 36, 37})
        EXPECT_EQ(suites.suite(slot), &table) << slot;
}

TEST(SuiteSet, ARefusedSuiteIsAHostErrorThrownAsALong) {
    FakeHost host;
    host.suites[{"AEGP Stream Suite", 4}] = nullptr;  // accepted, but without a table
    const SPBasicSuite* basics[] = {host.inData().pica_basicP, nullptr};
    for (const SPBasicSuite* basic : basics) {
        SuiteSet suites(basic);
        for (const int slot :
             {SuiteSet::kLayerSlot, SuiteSet::kStreamSlot, SuiteSet::kParamUtilsSlot}) {
            gLastError = 0;
            try {
                suites.suite(slot);
                ADD_FAILURE() << "slot " << slot << " was granted";
            } catch (long code) {
                EXPECT_EQ(code, 516);
                EXPECT_EQ(gLastError, 516);
            }
        }
    }
    gLastError = 0;
}

template <typename Throw>
Failure failureOf(Throw&& throwIt) {
    try {
        throwIt();
    } catch (...) {
        return describeFailure();
    }
    return {};
}

TEST(Failure, EveryExceptionHasItsTextAndNumber) {
    const char* noMemory = "Not enough memory to complete operation.";
    const auto badAlloc = [] { throw std::bad_alloc(); };
    const auto hostCode = [] { throw 516L; };

    Failure f = failureOf([] { throw kImageBufferFailed; });
    EXPECT_STREQ(f.text, noMemory);
    EXPECT_EQ(f.code, 4);

    f = failureOf([] { throw kSetGroupMissing; });
    EXPECT_STREQ(f.text, "Fatal Orvinex error (208) occurred during operation.");
    EXPECT_EQ(f.code, 512);

    gLastError = 0;
    f = failureOf(badAlloc);
    EXPECT_STREQ(f.text, noMemory);
    EXPECT_EQ(f.code, 4);

    for (const PF_Err stored : {516, 3}) {
        gLastError = stored;
        f = failureOf(hostCode);
        EXPECT_STREQ(f.text, "After Effects Plugin error occurred during operation.");
        EXPECT_EQ(f.code, stored);
    }
    gLastError = 0;
}

TEST(HostProgress, AsksTheHostAndStopsAtItsFirstNonZeroAnswer) {
    FakeHost host;
    const PF_InData in = host.inData();
    {
        const HostProgress progress(in);
        EXPECT_EQ(pollProgress(1, 10), 0);
        EXPECT_EQ(progress.stopped(), 0);
        host.abortAnswer = PF_Interrupt_CANCEL;
        EXPECT_EQ(pollProgress(2, 10), PF_Interrupt_CANCEL);
        EXPECT_EQ(pollProgress(3, 10), PF_Interrupt_CANCEL);
        EXPECT_EQ(progress.stopped(), PF_Interrupt_CANCEL);
        EXPECT_EQ(host.progressCalls, 2);
        EXPECT_EQ(host.abortCalls, 2);
    }
    EXPECT_EQ(pollProgress(4, 10), 0);
    EXPECT_EQ(host.abortCalls, 2);
}

}  // namespace
}  // namespace orvin
