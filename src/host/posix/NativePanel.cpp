#include "host/PanelSurface.h"

namespace orvin {

std::unique_ptr<PanelSurface> openDeviceContextSurface(const PF_InData&, const PF_EventExtra&) {
    return nullptr;
}

// No window of the host's can be told to redraw here: the host redraws after each command.
void invalidateMainWindow(const PF_InData&) {}

}  // namespace orvin
