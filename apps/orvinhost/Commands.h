// What orvinhost can be asked to do.
#pragma once

#include "common/Options.h"

#include <span>
#include <string>
#include <vector>

namespace orvin::stand_in {

struct Command {
    apps::CommandSpec spec;
    int (*run)(const apps::ParsedOptions& parsed);  // the exit status
};

const std::vector<Command>& commands();

/// The program: arguments without the program's name; the exit status.
int runProgram(std::span<const std::string> arguments);

}  // namespace orvin::stand_in
