#include "orvinhost/SuiteBook.h"

#include <cstring>

namespace orvin::stand_in {
namespace {

constexpr const char* kParamUtils = "PF Param Utils Suite";
constexpr const char* kPathData = "PF Path Data Suite";

std::string suiteName(const std::string& name, std::int32_t version) {
    return "\"" + name + "\" " + std::to_string(version);
}

}  // namespace

SPErr SuiteBook::acquire(const char* name, std::int32_t version, const void** suite) {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (name == nullptr || suite == nullptr) {
        report_(Rule::kCallbackArgument, "AcquireSuite with a null pointer");
        return kSPBadParameterError;
    }
    *suite = nullptr;
    for (const SuiteOffer& offer : allSuites()) {
        if (offer.version != version || std::strcmp(offer.name, name) != 0) continue;
        if (generation_ < offer.since || generation_ >= offer.until) continue;
        ++held_[{name, version}];
        *suite = offer.table;
        return kSPNoError;
    }
    return kSPSuiteNotFoundError;
}

SPErr SuiteBook::release(const char* name, std::int32_t version) {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (name == nullptr) {
        report_(Rule::kCallbackArgument, "ReleaseSuite with a null name");
        return kSPBadParameterError;
    }
    const auto held = held_.find({name, version});
    if (held != held_.end() && held->second > 0) {
        --held->second;
        return kSPNoError;
    }
    if (std::strcmp(name, kPathData) == 0)
        ++strayPathData_;
    else
        report_(Rule::kSuiteReleased, "release of " + suiteName(name, version));
    return held == held_.end() ? kSPSuiteNotFoundError : kSPSuiteAlreadyReleasedError;
}

void SuiteBook::checkAtEnd() {
    const std::lock_guard<std::mutex> guard(mutex_);
    for (auto& entry : held_) {
        const std::string& name = entry.first.first;
        // One release under the other name answers for one acquire.
        const int habit = name == kParamUtils ? std::min(entry.second, strayPathData_) : 0;
        if (habit > 0)
            report_(Rule::kSuiteSlot27, suiteName(name, entry.first.second) + " held " +
                                            std::to_string(habit) + " time(s)");
        strayPathData_ -= habit;
        if (entry.second > habit)
            report_(Rule::kSuiteUnbalanced, suiteName(name, entry.first.second) + " held " +
                                                std::to_string(entry.second - habit) + " time(s)");
        entry.second = 0;
    }
    if (strayPathData_ > 0) report_(Rule::kSuiteReleased, "release of " + suiteName(kPathData, 1));
    strayPathData_ = 0;
}

}  // namespace orvin::stand_in
