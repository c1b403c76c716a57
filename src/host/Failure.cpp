#include "host/Failure.h"

#include <cstdio>

#include "host/HostState.h"
#include "toolkit/Errors.h"

namespace orvin {

namespace {

constexpr const char* kNoMemoryText = "Not enough memory to complete operation.";
constexpr const char* kInternalText = "Fatal Orvinex error (%d) occurred during operation.";
constexpr const char* kPluginText = "After Effects Plugin error occurred during operation.";

}  // namespace

Failure describeFailure() noexcept {
    Failure failure{};
    try {
        throw;
    } catch (eBaseError) {
        failure.code = PF_Err_OUT_OF_MEMORY;
        std::snprintf(failure.text, sizeof failure.text, "%s", kNoMemoryText);
    } catch (eOrvinError error) {
        failure.code = PF_Err_INTERNAL_STRUCT_DAMAGED;
        std::snprintf(failure.text, sizeof failure.text, kInternalText, static_cast<int>(error));
    } catch (...) {
        const bool hostError = gLastError != PF_Err_NONE;
        failure.code = hostError ? gLastError : PF_Err_OUT_OF_MEMORY;
        std::snprintf(failure.text, sizeof failure.text, "%s",
                      hostError ? kPluginText : kNoMemoryText);
    }
    return failure;
}

}  // namespace orvin
