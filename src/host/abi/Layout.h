// Checks that pin a structure to the layout that the host publishes for 64-bit systems.
#pragma once

#include <cstddef>

#define ORVIN_ABI_SIZE(type, bytes) \
    static_assert(sizeof(type) == (bytes), #type " has the host's size")
#define ORVIN_ABI_OFFSET(type, field, bytes)        \
    static_assert(offsetof(type, field) == (bytes), \
                  #type "::" #field " stands where the host has it")

namespace orvin {

static_assert(sizeof(void*) == 8, "the declarations are those of the host's 64-bit generation");

}  // namespace orvin
