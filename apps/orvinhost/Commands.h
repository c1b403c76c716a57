// What orvinhost can be asked to do.
#pragma once

#include <span>
#include <string>

namespace orvin::stand_in {

/// The program: arguments without the program's name; the exit status.
int runProgram(std::span<const std::string> arguments);

}  // namespace orvin::stand_in
