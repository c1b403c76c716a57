// Which generation of the host hands out which suites.
#include "orvinhost/SuiteBook.h"
#include "orvinhost/SuiteTables.h"
#include "orvinhost/Unsupported.h"

#include <climits>
#include <vector>

namespace orvin::stand_in {
namespace {

// A suite that exists but isn't served: every slot reports its use. No suite has more slots.
struct ReportingTable {
    PF_UncalledFn slots[64];
};

template <FixedName name>
const void* reporting() {
    static const ReportingTable table = unsupportedTable<ReportingTable, name>();
    return &table;
}

constexpr int kNever = INT_MAX;
constexpr int kOld = generation(12, 5);   // the first hosts with these suites
constexpr int k13_2 = generation(13, 2);  // version 3 of PF Param Utils Suite
constexpr int k13_4 = generation(13, 4);
constexpr int k13_7 = generation(13, 7);

// The name of a suite that isn't served, kept in static storage.
template <FixedName name>
struct StaticName {
    static constexpr FixedName<sizeof name.text> value = name;
};

template <FixedName name>
SuiteOffer unservedForEver(std::int32_t version) {
    return {StaticName<name>::value.text, version, kOld, kNever, reporting<name>()};
}

template <FixedName name>
SuiteOffer unservedUntil64Bit(std::int32_t version) {
    return {StaticName<name>::value.text, version, kOld, kFirst64Bit, reporting<name>()};
}

}  // namespace

std::span<const SuiteOffer> allSuites() {
    static const std::vector<SuiteOffer> offers{
        {"AEGP PF Interface Suite", 1, kOld, kNever, &pfInterfaceSuite()},
        {"AEGP Layer Suite", 5, kOld, kNever, &layerSuite()},
        {"AEGP Stream Suite", 4, kOld, kNever, &streamSuite()},
        {"AEGP Light Suite", 1, kOld, kNever, &lightSuite()},
        {"PF Param Utils Suite", 1, kOld, kFirst64Bit, paramUtilsSuite()},
        {"PF Param Utils Suite", 2, kFirst64Bit, kNever, paramUtilsSuite()},
        {"PF Param Utils Suite", 3, k13_2, kNever, paramUtilsSuite()},
        {"PF Handle Suite", 1, kOld, kFirst64Bit, handleSuite()},
        {"PF Handle Suite", 2, kFirst64Bit, kNever, handleSuite()},
        {kPFEffectCustomUISuite, 1, kFirst64Bit, kNever, customUiSuite()},
        {kDRAWBOT_DrawSuite, 1, kFirst64Bit, kNever, drawbotDrawSuite()},
        {kDRAWBOT_SupplierSuite, 1, kFirst64Bit, kNever, drawbotSupplierSuite()},
        {kDRAWBOT_SurfaceSuite, 1, kFirst64Bit, kNever, drawbotSurfaceSuite()},
        {kPFAppSuite, 6, kFirst64Bit, kNever, appSuite6()},
        {kPFAppSuite, 7, k13_4, kNever, appSuite7()},
        {kPFAppSuite, 1, kOld, kFirst64Bit, reporting<"PF AE App Suite 1">()},
        {kPFAppSuite, 1, k13_7, kNever, appSuite7()},
        unservedForEver<"AEGP Comp Suite">(6),
        unservedUntil64Bit<"AEGP Proj Suite">(2),
        unservedForEver<"AEGP Keyframe Suite">(1),
        unservedForEver<"AEGP Canvas Suite">(6),
        unservedForEver<"AEGP Camera Suite">(2),
        unservedUntil64Bit<"AEGP Register Suite">(1),
        unservedForEver<"AEGP Memory Suite">(1),
        unservedForEver<"AEGP Item Suite">(3),
        unservedForEver<"AEGP Effect Suite">(1),
        unservedForEver<"AEGP Layer Mask Suite">(3),
        unservedForEver<"AEGP Mask Outline Suite">(3),
        unservedUntil64Bit<"AEGP Footage Suite">(3),
        unservedForEver<"AEGP Command Suite">(1),
        unservedForEver<"AEGP Utility Suite">(3),
        unservedForEver<"PF ANSI Suite">(1),
        unservedUntil64Bit<"PF Fill Matte Suite">(1),
        unservedForEver<"PF World Transform Suite">(1),
        unservedUntil64Bit<"AEGP Composite Suite">(2),
        unservedForEver<"PF World Suite">(1),
        unservedForEver<"PF Path Query Suite">(1),
        unservedForEver<"PF Path Data Suite">(1),
        unservedUntil64Bit<"AEGP IO In Suite">(1),
        unservedUntil64Bit<"AEGP IO Out Suite">(1),
        unservedForEver<"AEGP Render Queue Suite">(1),
        unservedUntil64Bit<"AEGP File Import Manager Suite">(2),
        unservedForEver<"PF Sampling8 Suite">(1),
        unservedForEver<"PF Sampling16 Suite">(1),
        unservedForEver<"PF Iterate8 Suite">(1),
        unservedForEver<"PF iterate16 Suite">(1),
        unservedForEver<"AEGP Collection Suite">(1),
    };
    return offers;
}

}  // namespace orvin::stand_in
