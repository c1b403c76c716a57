// One effect applied to one layer, from GLOBAL_SETUP to GLOBAL_SETDOWN: builds the structures of
// each command, calls the entry, and checks what came back.
#pragma once

#include "orvinhost/Guarded.h"
#include "orvinhost/Host.h"

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <vector>

namespace orvin::stand_in {

/// What a command came to.
struct Outcome {
    PF_Err error = PF_Err_NONE;
    std::string message;    // return_msg, line ends as '\n'
    bool isError = false;   // the message is an error box
    PF_OutFlags flags = 0;  // out_flags
    bool aborted = false;   // the host asked the effect to stop

    bool failed() const { return error != PF_Err_NONE; }
    /// "PF_Cmd_RENDER failed with 512: message".
    std::string text(PF_Cmd command) const;
};

class Instance {
  public:
    Instance(Host& host, PF_EffectMainFn entry) : host_(host), entry_(entry) {}
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    // The module's life.
    Outcome globalSetup();
    Outcome paramsSetup();
    Outcome globalSetdown();
    Outcome about();

    // The instance's life.
    Outcome sequenceSetup();
    /// From what a project stored, in a new handle.
    Outcome resetup(std::span<const std::uint8_t> flat);
    /// From the handle that FLATTEN left: the instance goes on.
    Outcome resetup();
    /// `flat` gets the bytes that a project stores.
    Outcome flatten(std::vector<std::uint8_t>& flat);
    Outcome sequenceSetdown();
    bool hasSequence() const { return sequence_ != nullptr; }

    // User interface, at a frame of the layer.
    Outcome doDialog(double frame);
    /// USER_CHANGED_PARAM for one parameter.
    Outcome userChanged(int index, double frame);
    Outcome updateParamsUi(double frame);
    Outcome queryDynamicFlags(double frame);
    /// NEW_CONTEXT, ACTIVATE, IDLE, DEACTIVATE, CLOSE_CONTEXT: those without a record.
    Outcome plainEvent(PF_EventType event, double frame);
    /// DRAW of the effect's own control into the host's panel.
    Outcome draw(double frame);
    /// A click at a point of the control, and the drags along `path` as long as the effect asks
    /// for them.
    Outcome click(double frame, PF_Point point, std::span<const PF_Point> path);
    /// Index of the parameter with the effect's own control, or -1.
    int controlParam() const;

    /// FRAME_SETUP, RENDER and FRAME_SETDOWN. `output` is a fresh world.
    Outcome render(double frame, World& output);

  private:
    struct Serving;  // the structures of one command

    Outcome serve(PF_Cmd command, double frame, void* extra = nullptr, World* output = nullptr,
                  PF_EventType event = PF_Event_NONE);
    void fillInData(Serving& serving) const;
    void fillParams(Serving& serving);
    Outcome collect(Serving& serving, PF_Err error);
    void checkStructures(Serving& serving);
    void checkParams(Serving& serving);
    void checkCheckouts(Serving& serving);
    void checkFlags(Serving& serving);
    void takeSequence(Serving& serving, PF_Err error);
    PF_EventExtra eventRecord(PF_EventType event);
    Outcome sendEvent(PF_EventExtra& record, double frame);

    Host& host_;
    PF_EffectMainFn entry_;
    PF_Handle sequence_ = nullptr;
    PF_Handle frameData_ = nullptr;
    PF_Context context_{};
    PF_Context* contextPointer_ = &context_;
};

}  // namespace orvin::stand_in
