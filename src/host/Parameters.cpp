// PF_Cmd_PARAMS_SETUP: hands the parameter table over to the host.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "host/DescribeParameters.h"
#include "host/FrameServices.h"
#include "host/HostState.h"
#include "host/ParamValues.h"
#include "host/ParameterTable.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr A_short kPanelWidth = 319;
constexpr A_short kPanelHeight = 260;
constexpr A_short kSliderDecimals = 2;
constexpr PF_ParamFlags kFixedBox = PF_ParamFlag_SUPERVISE | PF_ParamFlag_CANNOT_TIME_VARY;

bool atLeast(PF_SpecVersion version, A_short major, A_short minor) {
    return version.major > major || (version.major == major && version.minor >= minor);
}

HostGeneration generationOf(PF_SpecVersion version) {
    return {version.major >= 12, hasCompLinks(version)};
}

A_short choiceCount(std::string_view choices) {
    return static_cast<A_short>(1 + std::count(choices.begin(), choices.end(), '|'));
}

void describeSlider(const ParameterEntry& entry, PF_ParamDef& def) {
    def.param_type = PF_Param_FIX_SLIDER;
    def.flags = PF_ParamFlag_SUPERVISE | PF_ParamFlag_START_COLLAPSED;
    PF_FixedSliderDef& slider = def.u.fd;
    slider.value = slider.dephault = toFixed(entry.initial);
    slider.valid_min = toFixed(entry.validMin);
    slider.valid_max = toFixed(entry.validMax);
    slider.slider_min = toFixed(entry.sliderMin);
    slider.slider_max = toFixed(entry.sliderMax);
    slider.precision = kSliderDecimals;
}

PF_ParamDef describe(const ParameterEntry& entry, PF_SpecVersion host) {
    PF_ParamDef def;
    std::memset(&def, 0, sizeof(def));
    def.uu.id = entry.id;
    entry.name.copy(def.name, sizeof(def.name) - 1);
    switch (entry.kind) {
        case ParameterKind::kPanel:
            def.param_type = PF_Param_NO_DATA;
            def.flags = kFixedBox;
            def.ui_flags = PF_PUI_CONTROL;
            if (atLeast(host, 12, 2)) def.ui_flags |= PF_PUI_DONT_ERASE_CONTROL;
            def.ui_width = kPanelWidth;
            def.ui_height = kPanelHeight;
            break;
        case ParameterKind::kCheckbox:
            def.param_type = PF_Param_CHECKBOX;
            // What a frame is composited on may change over time, where camera and lights come
            // from may not.
            def.flags = entry.animated ? PF_ParamFlags{PF_ParamFlag_SUPERVISE} : kFixedBox;
            def.u.bd.u.nameptr = entry.text;
            break;
        case ParameterKind::kGroupStart:
            def.param_type = PF_Param_GROUP_START;
            break;
        case ParameterKind::kGroupEnd:
            def.param_type = PF_Param_GROUP_END;
            break;
        case ParameterKind::kPopup:
            def.param_type = PF_Param_POPUP;
            def.flags = kFixedBox;
            def.u.pd.num_choices = choiceCount(entry.text);
            def.u.pd.dephault = static_cast<A_short>(entry.initial);
            def.u.pd.value = def.u.pd.dephault;
            def.u.pd.u.namesptr = entry.text;
            break;
        case ParameterKind::kSlider:
            describeSlider(entry, def);
            break;
        case ParameterKind::kColor:
            def.param_type = PF_Param_COLOR;
            def.flags = PF_ParamFlag_SUPERVISE;
            def.u.cd.value = {255, entry.color[0], entry.color[1], entry.color[2]};
            def.u.cd.dephault = def.u.cd.value;
            break;
        case ParameterKind::kLayer:
            def.param_type = PF_Param_LAYER;
            def.u.ld.dephault = PF_LayerDefault_NONE;
            break;
    }
    return def;
}

}  // namespace

std::vector<PF_ParamDef> describeParameters(PF_SpecVersion host) {
    std::vector<PF_ParamDef> defs;
    for (const ParameterEntry& entry : parameterTable(generationOf(host)))
        defs.push_back(describe(entry, host));
    return defs;
}

PF_Err addParameters(PF_InData& in, PF_OutData& out) {
    if (in.inter.add_param == nullptr || in.inter.register_ui == nullptr)
        return PF_Err_BAD_CALLBACK_PARAM;
    gSetCount = setCountFor(generationOf(in.version));
    auto defs = describeParameters(in.version);
    for (PF_ParamDef& def : defs) {
        const PF_Err error = in.inter.add_param(in.effect_ref, -1, &def);
        if (error != PF_Err_NONE) return error;
    }
    out.num_params = static_cast<A_long>(defs.size()) + 1;
    PF_CustomUIInfo panel;
    std::memset(&panel, 0, sizeof(panel));
    panel.events = PF_CustomEFlag_EFFECT;
    return in.inter.register_ui(in.effect_ref, &panel);
}

}  // namespace orvin
