// The table by which all suites are fetched. Suites are counted: one release with the same name and
// version for each acquire. Names are compared exactly; the version is the number listed for the
// suite, not the one in its structure's name.
#pragma once

#include "host/abi/Types.h"

namespace orvin {

struct SPBasicSuite {
    SPErr (*AcquireSuite)(const char* name, std::int32_t version, const void** suite);
    SPErr (*ReleaseSuite)(const char* name, std::int32_t version);
    SPBoolean (*IsEqual)(const char* token1, const char* token2);
    SPErr (*AllocateBlock)(std::size_t size, void** block);
    SPErr (*FreeBlock)(void* block);
    SPErr (*ReallocateBlock)(void* block, std::size_t newSize, void** newBlock);
    SPErr (*Undefined)();
};
ORVIN_ABI_SIZE(SPBasicSuite, 56);
ORVIN_ABI_OFFSET(SPBasicSuite, AcquireSuite, 0);
ORVIN_ABI_OFFSET(SPBasicSuite, ReleaseSuite, 8);
ORVIN_ABI_OFFSET(SPBasicSuite, IsEqual, 16);
ORVIN_ABI_OFFSET(SPBasicSuite, AllocateBlock, 24);
ORVIN_ABI_OFFSET(SPBasicSuite, FreeBlock, 32);
ORVIN_ABI_OFFSET(SPBasicSuite, ReallocateBlock, 40);
ORVIN_ABI_OFFSET(SPBasicSuite, Undefined, 48);

enum : SPErr {
    kSPNoError = 0,
    kSPBadParameterError = 0x5061726D,             // 'Parm'
    kSPUnimplementedError = 0x21494D50,            // '!IMP'
    kSPSuiteNotFoundError = 0x53214664,            // 'S!Fd'
    kSPSuiteAlreadyReleasedError = 0x5352656C,     // 'SRel'
    kSPBadSuiteInternalVersionError = 0x53495673,  // 'SIVs'
    kSPUserCanceledError = 0x73746F70,             // 'stop'
};

}  // namespace orvin
