// What an exception means to the user and to the host.
#pragma once

#include "host/abi/Types.h"

namespace orvin {

struct Failure {
    char text[128];  // NUL-terminated
    PF_Err code;     // host error
};

/// Describes the exception that is being handled: only within a catch clause. Allocates nothing. An
/// unknown exception is the host's error where gLastError holds one, and lack of memory otherwise.
Failure describeFailure() noexcept;

}  // namespace orvin
