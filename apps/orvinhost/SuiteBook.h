// The host's suites: which of them this generation has, and who holds which.
#pragma once

#include "host/abi/BasicSuite.h"
#include "orvinhost/Rules.h"

#include <functional>
#include <map>
#include <mutex>
#include <span>
#include <string>
#include <utility>

namespace orvin::stand_in {

/// A version of the host's interface as one number, so that versions compare.
constexpr int generation(int major, int minor) {
    return major * 1000 + minor;
}
inline constexpr int kFirst64Bit = generation(13, 0);

struct SuiteOffer {
    const char* name;
    std::int32_t version;
    int since;  // first generation that hands it out
    int until;  // first one that doesn't
    const void* table;
};

/// Everything that hosts of any generation hand out, with its functions.
std::span<const SuiteOffer> allSuites();

class SuiteBook {
  public:
    using Report = std::function<void(Rule, const std::string&)>;
    SuiteBook(int hostGeneration, Report report)
        : generation_(hostGeneration), report_(std::move(report)) {}

    SPErr acquire(const char* name, std::int32_t version, const void** suite);
    SPErr release(const char* name, std::int32_t version);
    /// Suites that are still held, and an account of the slot-27 habit.
    void checkAtEnd();

  private:
    std::mutex mutex_;
    int generation_;
    Report report_;
    std::map<std::pair<std::string, std::int32_t>, int> held_;
    int strayPathData_ = 0;
};

}  // namespace orvin::stand_in
