#include "vector/font/FontDiagnostics.h"

#include <cstdarg>
#include <cstdio>

namespace orvin {
namespace {

bool reporting = false;

}  // namespace

void setFontDiagnostics(bool on) {
    reporting = on;
}

bool fontDiagnostics() {
    return reporting;
}

void fontReport(const char* format, ...) {
    if (!reporting) return;
    std::va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
}

}  // namespace orvin
