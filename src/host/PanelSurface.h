// PanelSurface: where the panel's picture goes while a draw event is served. Two roads, by the
// host's generation: the Drawbot suites of 64-bit hosts, and the device context that older hosts
// lend.
#pragma once

#include <memory>

#include "host/EffectPanel.h"
#include "host/abi/InData.h"

namespace orvin {

class PanelSurface {
  public:
    virtual ~PanelSurface() = default;

    /// The native window behind the surface; null where the host has none for us.
    virtual void* window() const = 0;

    /// Shows the picture with its upper left corner at a place of the host's pane. False where the
    /// host refused a step.
    virtual bool paint(const PanelPicture& picture, int left, int top) = 0;
};

/// The road that the host offers for this event; null where it offers none, and nothing is to be
/// drawn then.
std::unique_ptr<PanelSurface> openPanelSurface(const PF_InData& in, const PF_EventExtra& event);

/// The Drawbot road; null where a suite or the drawing reference is missing.
std::unique_ptr<PanelSurface> openDrawbotSurface(const PF_InData& in, const PF_EventExtra& event);

/// The device-context road, for hosts of interface 12: null on others, and on systems without
/// device contexts. Such a host's PF_Context has the context's graphics port in the place of
/// reserved_flt.
std::unique_ptr<PanelSurface> openDeviceContextSurface(const PF_InData& in,
                                                       const PF_EventExtra& event);

/// The host's main window, null where it has none.
void* mainWindow(const PF_InData& in);

/// Marks the host's main window for redraw.
void invalidateMainWindow(const PF_InData& in);

/// Asks the host for a draw event soon. False where it has no way to be asked.
bool invalidatePanel(const PF_InData& in, PF_ContextH context);

}  // namespace orvin
