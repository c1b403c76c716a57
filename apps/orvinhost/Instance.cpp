#include "orvinhost/Instance.h"

#include "orvinhost/Serving.h"
#include "orvinhost/Unsupported.h"

#include <algorithm>
#include <cstring>

namespace orvin::stand_in {
namespace {

// Commands of the module, not of an instance on a layer: nothing about time and size is valid.
bool ofModule(PF_Cmd command) {
    return command == PF_Cmd_ABOUT || command == PF_Cmd_GLOBAL_SETUP ||
           command == PF_Cmd_GLOBAL_SETDOWN || command == PF_Cmd_PARAMS_SETUP;
}

bool ofSequence(PF_Cmd command) {
    return command == PF_Cmd_SEQUENCE_SETUP || command == PF_Cmd_SEQUENCE_RESETUP ||
           command == PF_Cmd_SEQUENCE_FLATTEN || command == PF_Cmd_SEQUENCE_SETDOWN;
}

bool rendersFrame(PF_Cmd command) {
    return command == PF_Cmd_FRAME_SETUP || command == PF_Cmd_RENDER ||
           command == PF_Cmd_FRAME_SETDOWN;
}

}  // namespace

std::string Outcome::text(PF_Cmd command) const {
    std::string line = commandName(command) + " failed with " + std::to_string(error);
    if (!message.empty()) line += ": " + message;
    return line;
}

void Instance::fillInData(Serving& serving) const {
    const HostSettings& settings = host_.settings();
    const PF_Cmd command = serving.call.command;
    PF_InData& in = serving.in.value;
    in.inter = host_.interact();
    in.utils = &host_.utils();
    in.effect_ref = host_.effectRef();
    in.version = settings.version;
    in.appl_id = kAppIdAfterEffects;
    in.num_params = command == PF_Cmd_PARAMS_SETUP ? 0 : host_.params().count();
    in.what_cpu = in.what_fpu = -0x21524111;  // undefined on this system
    in.quality = settings.bestQuality ? PF_Quality_HI : PF_Quality_LO;
    in.global_data = host_.globalData;
    in.sequence_data = ofModule(command) ? nullptr : sequence_;
    in.frame_data = frameData_;
    in.pica_basicP = &host_.basicSuite();
    if (ofModule(command)) return;
    in.current_time = settings.timeOf(serving.call.frame);
    in.time_step = settings.timeStep();
    in.local_time_step = settings.timeStep();
    in.total_time = settings.timeOf(settings.duration);
    in.time_scale = settings.timeScale();
    in.field = PF_Field_FRAME;
    in.width = settings.width;
    in.height = settings.height;
    in.extent_hint = {0, 0, settings.width, settings.height};
    in.downsample_x = in.downsample_y = {1, static_cast<A_u_long>(settings.downsample)};
    in.pixel_aspect_ratio = settings.pixelAspect;
}

void Instance::fillParams(Serving& serving) {
    const PF_Cmd command = serving.call.command;
    if (ofModule(command) || ofSequence(command)) return;
    for (int i = 0; i < host_.params().count(); ++i) {
        PF_ParamDef& def = serving.params.emplace_back().value;
        def = host_.params().valueAt(i, serving.call.frame);
        // The dynamic flags are asked for before there are values: these are none.
        if (command == PF_Cmd_QUERY_DYNAMIC_FLAGS) std::memset(&def.u, 0xDD, sizeof def.u);
    }
    if (rendersFrame(command)) {
        serving.input = host_.layerWorld(0, serving.call.frame);
        serving.inputChecksum = serving.input.checksum();
        serving.input.describe(serving.params.front().value.u.ld, false,
                               host_.settings().pixelAspect);
    }
    for (Guarded<PF_ParamDef>& param : serving.params) {
        serving.pointers.push_back(&param.value);
        serving.paramsBefore.push_back(param.value);
    }
    serving.call.params = serving.pointers;
}

Outcome Instance::serve(PF_Cmd command, double frame, void* extra, World* output,
                        PF_EventType event) {
    Serving serving(host_);
    serving.call.command = command;
    serving.call.event = event;
    serving.call.frame = frame;
    if (command == PF_Cmd_EVENT) serving.event = static_cast<PF_EventExtra*>(extra);
    if (command == host_.settings().refuseIn && host_.settings().refuseRequest > 0 &&
        !host_.handles().refused())
        host_.handles().refuseRequest(host_.settings().refuseRequest);
    fillInData(serving);
    fillParams(serving);
    serving.inBefore = serving.in.value;

    PF_OutData& out = serving.out.value;
    out.global_data = serving.in.value.global_data;
    out.sequence_data = serving.in.value.sequence_data;
    out.frame_data = serving.in.value.frame_data;
    out.out_flags2 = serving.flags2Before = host_.currentFlags2;
    if (output != nullptr) {
        serving.outputWorld = output;
        output->describe(serving.output.value, true, host_.settings().pixelAspect);
    }

    for (const PF_Handle handle : {host_.globalData, serving.inBefore.sequence_data, frameData_})
        host_.handles().hostLock(handle);
    PF_Err error = PF_Err_NONE;
    {
        const CallScope scope(serving.call);
        try {
            error = entry_(command, &serving.in.value, &out,
                           serving.pointers.empty() ? nullptr : serving.pointers.data(),
                           output == nullptr ? nullptr : &serving.output.value, extra);
        } catch (...) {
            host_.report(Rule::kCrossedBorder, "an exception came out of the entry");
            error = PF_Err_INTERNAL_STRUCT_DAMAGED;
        }
        for (const PF_Handle handle : {serving.inBefore.global_data, serving.inBefore.sequence_data,
                                       serving.inBefore.frame_data})
            host_.handles().hostUnlock(handle);
        return collect(serving, error);
    }
}

Outcome Instance::globalSetup() {
    return serve(PF_Cmd_GLOBAL_SETUP, 0.0);
}

Outcome Instance::paramsSetup() {
    return serve(PF_Cmd_PARAMS_SETUP, 0.0);
}

Outcome Instance::globalSetdown() {
    return serve(PF_Cmd_GLOBAL_SETDOWN, 0.0);
}

Outcome Instance::about() {
    return serve(PF_Cmd_ABOUT, 0.0);
}

Outcome Instance::sequenceSetup() {
    sequence_ = nullptr;
    return serve(PF_Cmd_SEQUENCE_SETUP, 0.0);
}

Outcome Instance::resetup(std::span<const std::uint8_t> flat) {
    sequence_ = host_.handles().hostAllocate(flat);
    return serve(PF_Cmd_SEQUENCE_RESETUP, 0.0);
}

Outcome Instance::resetup() {
    return serve(PF_Cmd_SEQUENCE_RESETUP, 0.0);
}

Outcome Instance::flatten(std::vector<std::uint8_t>& flat) {
    const Outcome outcome = serve(PF_Cmd_SEQUENCE_FLATTEN, 0.0);
    if (!outcome.failed()) flat = host_.handles().bytes(sequence_);
    return outcome;
}

Outcome Instance::sequenceSetdown() {
    return serve(PF_Cmd_SEQUENCE_SETDOWN, 0.0);
}

Outcome Instance::doDialog(double frame) {
    return serve(PF_Cmd_DO_DIALOG, frame);
}

Outcome Instance::userChanged(int index, double frame) {
    PF_UserChangedParamExtra extra{index};
    return serve(PF_Cmd_USER_CHANGED_PARAM, frame, &extra);
}

Outcome Instance::updateParamsUi(double frame) {
    return serve(PF_Cmd_UPDATE_PARAMS_UI, frame);
}

Outcome Instance::queryDynamicFlags(double frame) {
    return serve(PF_Cmd_QUERY_DYNAMIC_FLAGS, frame);
}

int Instance::controlParam() const {
    for (int i = 1; i < host_.params().count(); ++i)
        if ((host_.params()[i].def.ui_flags & PF_PUI_CONTROL) != 0) return i;
    return -1;
}

PF_EventExtra Instance::eventRecord(PF_EventType event) {
    context_.magic = PF_CONTEXT_MAGIC;
    context_.w_type = PF_Window_EFFECT;
    PF_EventExtra record{};
    record.contextH = &contextPointer_;
    record.e_type = event;
    record.cbs = {&host_,
                  unsupportedSlot<"layer_to_comp">(),
                  unsupportedSlot<"comp_to_layer">(),
                  unsupportedSlot<"get_comp2layer_xform">(),
                  unsupportedSlot<"get_layer2comp_xform">(),
                  unsupportedSlot<"source_to_frame">(),
                  unsupportedSlot<"frame_to_source">(),
                  unsupportedSlot<"info_draw_color">(),
                  unsupportedSlot<"info_draw_text">()};
    const int index = controlParam();
    if (index >= 0) {
        // The control stands away from the pane's corner, so that a forgotten offset shows.
        const PF_ParamDef& def = host_.params()[index].def;
        record.effect_win.index = index;
        record.effect_win.area = PF_EA_CONTROL;
        record.effect_win.current_frame = {8, 20, 8 + def.ui_width, 20 + def.ui_height};
        record.effect_win.param_title_frame = {0, 0, 8 + def.ui_width, 20};
    }
    return record;
}

Outcome Instance::sendEvent(PF_EventExtra& record, double frame) {
    return serve(PF_Cmd_EVENT, frame, &record, nullptr, record.e_type);
}

Outcome Instance::plainEvent(PF_EventType event, double frame) {
    PF_EventExtra record = eventRecord(event);
    return sendEvent(record, frame);
}

Outcome Instance::draw(double frame) {
    PF_EventExtra record = eventRecord(PF_Event_DRAW);
    const PF_Rect& control = record.effect_win.current_frame;
    Panel& panel = host_.panel();
    if (!panel.isOpen()) panel.open(control.right + 8, control.bottom + 8);
    record.u.draw.update_rect = control;
    record.u.draw.depth = 32;
    panel.beginDraw();
    const Outcome outcome = sendEvent(record, frame);
    panel.endDraw();
    return outcome;
}

Outcome Instance::click(double frame, PF_Point point, std::span<const PF_Point> path) {
    PF_EventExtra record = eventRecord(PF_Event_DO_CLICK);
    const PF_Rect& control = record.effect_win.current_frame;
    PF_DoClickEventInfo& info = record.u.do_click;
    const auto inPane = [&control](PF_Point p) {
        return PF_Point{p.h + control.left, p.v + control.top};
    };
    info.num_clicks = 1;
    info.screen_point = inPane(point);
    Outcome outcome = sendEvent(record, frame);
    for (std::size_t i = 0; i < path.size() && !outcome.failed() && info.send_drag != 0; ++i) {
        record.e_type = PF_Event_DRAG;
        record.evt_out_flags = PF_EO_NONE;
        info.screen_point = inPane(path[i]);
        info.when += 16;
        info.last_time = i + 1 == path.size() ? 1 : 0;
        outcome = sendEvent(record, frame);
    }
    return outcome;
}

Outcome Instance::render(double frame, World& output) {
    Outcome outcome = serve(PF_Cmd_FRAME_SETUP, frame);
    if (outcome.failed()) return outcome;
    outcome = serve(PF_Cmd_RENDER, frame, nullptr, &output);
    const Outcome setdown = serve(PF_Cmd_FRAME_SETDOWN, frame);
    if (frameData_ != nullptr) {
        host_.report(Rule::kFrameData, "frame_data is left after FRAME_SETDOWN");
        host_.handles().hostDispose(frameData_);
        frameData_ = nullptr;
    }
    return outcome.failed() ? outcome : (setdown.failed() ? setdown : outcome);
}

}  // namespace orvin::stand_in
