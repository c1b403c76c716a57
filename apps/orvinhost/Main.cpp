#include "orvinhost/Commands.h"

#include <string>
#include <vector>

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return orvin::stand_in::runProgram(arguments);
}
