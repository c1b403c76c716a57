#include "common/ProgressBar.h"

#include <unistd.h>

namespace orvin::apps {

bool errorIsTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

}  // namespace orvin::apps
