#include "common/ProgressBar.h"

#include <windows.h>

namespace orvin::apps {

bool errorIsTerminal() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

}  // namespace orvin::apps
