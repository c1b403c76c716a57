// The report that font readers can give of what they meet: for a font that misbehaves.
#pragma once

namespace orvin {

/// Switches the report of all font readers on or off; process-wide, off at the start.
void setFontDiagnostics(bool on);
bool fontDiagnostics();

/// Prints to standard output while the report is on.
[[gnu::format(printf, 1, 2)]] void fontReport(const char* format, ...);

}  // namespace orvin
