#include "host/SuiteSet.h"

#include <initializer_list>

#include "host/HostState.h"

namespace orvin {

namespace {

struct SuiteName {
    const char* name;
    std::int32_t version;
};

constexpr std::array<SuiteName, SuiteSet::kSlots> kSuites = {{
    {"AEGP Comp Suite", 6},          {"AEGP Proj Suite", 2},
    {"AEGP Layer Suite", 5},         {"AEGP Stream Suite", 4},
    {"AEGP Keyframe Suite", 1},      {"AEGP Canvas Suite", 6},
    {"AEGP Camera Suite", 2},        {"AEGP Register Suite", 1},
    {"AEGP Memory Suite", 1},        {"AEGP Item Suite", 3},
    {"AEGP Light Suite", 1},         {"AEGP Effect Suite", 1},
    {"AEGP Layer Mask Suite", 3},    {"AEGP Mask Outline Suite", 3},
    {"AEGP Footage Suite", 3},       {"AEGP Command Suite", 1},
    {"AEGP Utility Suite", 3},       {"PF ANSI Suite", 1},
    {"PF Handle Suite", 1},          {"PF Fill Matte Suite", 1},
    {"PF World Transform Suite", 1}, {"AEGP Composite Suite", 2},
    {"PF World Suite", 1},           {"AEGP PF Interface Suite", 1},
    {"PF Path Query Suite", 1},      {"PF Path Data Suite", 1},
    {"PF Param Utils Suite", 1},     {"PF AE App Suite", 1},
    {"AEGP IO In Suite", 1},         {"AEGP IO Out Suite", 1},
    {"AEGP Render Queue Suite", 1},  {"AEGP File Import Manager Suite", 2},
    {"PF Sampling8 Suite", 1},       {"PF Sampling16 Suite", 1},
    {"PF Iterate8 Suite", 1},        {"PF iterate16 Suite", 1},
    {"AEGP Collection Suite", 1},
}};

// The param utils are given back under another suite's name: hosts have always seen this set do so.
constexpr SuiteName kParamUtilsReleasedAs{"PF Path Data Suite", 1};

// 64-bit hosts publish this suite as 3 and 2 only; the one slot that is called is the same in all.
constexpr std::initializer_list<std::int32_t> kParamUtilsVersions = {1, 3, 2};

const void* acquire(const SPBasicSuite& basic, const char* name, std::int32_t version) {
    const void* table = nullptr;
    return basic.AcquireSuite(name, version, &table) == kSPNoError ? table : nullptr;
}

}  // namespace

SuiteSet::~SuiteSet() {
    for (int slot = kSlots; slot >= 1; --slot) {
        const auto i = static_cast<std::size_t>(slot - 1);
        if (tables_[i] == nullptr) continue;
        const SuiteName& released = slot == kParamUtilsSlot ? kParamUtilsReleasedAs : kSuites[i];
        basic_->ReleaseSuite(released.name, released.version);
    }
}

const void* SuiteSet::suite(int slot) {
    const auto i = static_cast<std::size_t>(slot - 1);
    const void*& table = tables_[i];
    if (table != nullptr) return table;
    if (basic_ != nullptr) {
        if (slot == kParamUtilsSlot) {
            for (const std::int32_t version : kParamUtilsVersions)
                if ((table = acquire(*basic_, kSuites[i].name, version)) != nullptr) break;
        } else {
            table = acquire(*basic_, kSuites[i].name, kSuites[i].version);
        }
    }
    if (table == nullptr) checkHost(PF_Err_BAD_CALLBACK_PARAM);
    return table;
}

}  // namespace orvin
