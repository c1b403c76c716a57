// HostSuite: one suite of the host, given back at the end. For suites that may be missing.
#pragma once

#include <cstdint>

#include "host/abi/BasicSuite.h"

namespace orvin {

template <typename Table>
class HostSuite {
  public:
    HostSuite(const SPBasicSuite* basic, const char* name, std::int32_t version)
        : basic_(basic), name_(name), version_(version) {
        const void* table = nullptr;
        if (basic_ != nullptr && basic_->AcquireSuite(name, version, &table) == kSPNoError)
            table_ = static_cast<const Table*>(table);
    }
    ~HostSuite() {
        if (table_ != nullptr) basic_->ReleaseSuite(name_, version_);
    }
    HostSuite(const HostSuite&) = delete;
    HostSuite& operator=(const HostSuite&) = delete;

    explicit operator bool() const { return table_ != nullptr; }
    const Table* operator->() const { return table_; }

  private:
    const SPBasicSuite* basic_;
    const char* name_;
    std::int32_t version_;
    const Table* table_ = nullptr;
};

}  // namespace orvin
