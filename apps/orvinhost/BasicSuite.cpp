// SPBasicSuite: the table by which suites are fetched, and its plain memory blocks.
#include "orvinhost/Host.h"

#include <cstdlib>
#include <cstring>

namespace orvin::stand_in {
namespace {

SPErr acquireSuite(const char* name, std::int32_t version, const void** suite) {
    Host* host = Host::active();
    return host == nullptr ? kSPSuiteNotFoundError : host->suites().acquire(name, version, suite);
}

SPErr releaseSuite(const char* name, std::int32_t version) {
    Host* host = Host::active();
    return host == nullptr ? kSPSuiteNotFoundError : host->suites().release(name, version);
}

SPBoolean isEqual(const char* a, const char* b) {
    return a != nullptr && b != nullptr && std::strcmp(a, b) == 0 ? 1 : 0;
}

constexpr SPErr kOutOfMemory = static_cast<SPErr>(0xFFFFFF6Cu);

SPErr allocateBlock(std::size_t size, void** block) {
    if (block == nullptr) return kSPBadParameterError;
    *block = std::malloc(size == 0 ? 1 : size);
    return *block == nullptr ? kOutOfMemory : kSPNoError;
}

SPErr freeBlock(void* block) {
    std::free(block);
    return kSPNoError;
}

SPErr reallocateBlock(void* block, std::size_t size, void** out) {
    if (out == nullptr) return kSPBadParameterError;
    void* grown = std::realloc(block, size == 0 ? 1 : size);
    if (grown == nullptr) return kOutOfMemory;
    *out = grown;
    return kSPNoError;
}

SPErr undefined() {
    return kSPUnimplementedError;
}

}  // namespace

SPBasicSuite basicSuiteTable() {
    return {acquireSuite, releaseSuite,    isEqual,  allocateBlock,
            freeBlock,    reallocateBlock, undefined};
}

}  // namespace orvin::stand_in
