// The rules for one parameter definition at the moment when it is added.
#include "orvinhost/ParamList.h"

#include "host/abi/Flags.h"

#include <cstring>

namespace orvin::stand_in {
namespace {

constexpr PF_ParamFlags kKnownFlags = 0x3E6;
constexpr PF_ParamUIFlags kKnownUiFlags = 0x3FF;

// What a definition looks like that was cleared and then filled: only the fields that count for
// its type.
PF_ParamDef meaningful(const PF_ParamDef& def) {
    PF_ParamDef clean;
    std::memset(&clean, 0, sizeof clean);
    clean.uu.id = def.uu.id;
    clean.ui_flags = def.ui_flags;
    clean.ui_width = def.ui_width;
    clean.ui_height = def.ui_height;
    clean.param_type = def.param_type;
    std::memcpy(clean.name, def.name, strnlen(def.name, sizeof def.name));
    clean.flags = def.flags;
    const PF_ParamDefUnion& u = def.u;
    switch (def.param_type) {
        case PF_Param_LAYER:
            clean.u.ld.dephault = u.ld.dephault;
            break;
        case PF_Param_SLIDER:
            clean.u.sd = u.sd;
            break;
        case PF_Param_FIX_SLIDER:
            clean.u.fd = u.fd;
            break;
        case PF_Param_ANGLE:
            clean.u.ad = u.ad;
            break;
        case PF_Param_CHECKBOX:
            clean.u.bd.value = u.bd.value;
            clean.u.bd.dephault = u.bd.dephault;
            clean.u.bd.u.nameptr = u.bd.u.nameptr;
            break;
        case PF_Param_COLOR:
            clean.u.cd = u.cd;
            break;
        case PF_Param_POINT:
            clean.u.td = u.td;
            break;
        case PF_Param_POPUP:
            clean.u.pd = u.pd;
            break;
        case PF_Param_FLOAT_SLIDER:
            clean.u.fs_d = u.fs_d;
            break;
        case PF_Param_ARBITRARY_DATA:
            clean.u.arb_d = u.arb_d;
            break;
        case PF_Param_PATH:
            clean.u.path_d = u.path_d;
            break;
        case PF_Param_BUTTON:
            clean.u.button_d = u.button_d;
            break;
        case PF_Param_POINT_3D:
            clean.u.point3d_d = u.point3d_d;
            break;
        default:
            break;
    }
    return clean;
}

bool knownType(PF_ParamType type) {
    return type >= PF_Param_LAYER && type <= PF_Param_POINT_3D && type != PF_Param_CUSTOM &&
           type != PF_Param_RESERVED2 && type != PF_Param_RESERVED3;
}

template <typename T>
bool rangeInOrder(T validMin, T validMax, T sliderMin, T sliderMax, T initial) {
    return validMin < validMax && sliderMin < sliderMax && sliderMin >= validMin &&
           sliderMax <= validMax && initial >= validMin && initial <= validMax;
}

bool valueIsDefault(const PF_ParamDef& def) {
    const PF_ParamDefUnion& u = def.u;
    switch (def.param_type) {
        case PF_Param_SLIDER:
            return u.sd.value == u.sd.dephault;
        case PF_Param_FIX_SLIDER:
            return u.fd.value == u.fd.dephault;
        case PF_Param_CHECKBOX:
            return u.bd.value == u.bd.dephault;
        case PF_Param_POPUP:
            return u.pd.value == u.pd.dephault;
        case PF_Param_COLOR:
            return std::memcmp(&u.cd.value, &u.cd.dephault, sizeof u.cd.value) == 0;
        case PF_Param_FLOAT_SLIDER:
            return u.fs_d.value == static_cast<double>(u.fs_d.dephault);
        case PF_Param_ANGLE:
            return u.ad.value == u.ad.dephault;
        default:
            return true;
    }
}

}  // namespace

void checkDefinition(const PF_ParamDef& def, int index, const ParamList::Report& report) {
    const std::string who = "parameter " + std::to_string(index);
    const PF_ParamDefUnion& u = def.u;
    if (strnlen(def.name, sizeof def.name) == sizeof def.name)
        report(Rule::kParamName, who + ": the name has no end within its 32 bytes");
    if (!knownType(def.param_type)) {
        report(Rule::kParamType, who + ": type " + std::to_string(def.param_type));
        return;
    }
    const PF_ParamDef clean = meaningful(def);
    if (std::memcmp(&clean, &def, sizeof def) != 0)
        report(Rule::kParamCleared,
               who + ": bytes are set that don't belong to a " + paramTypeName(def.param_type));
    if (def.uu.id <= 0) report(Rule::kParamId, who + ": id " + std::to_string(def.uu.id));
    if ((def.flags & ~kKnownFlags) != 0 || (def.ui_flags & ~kKnownUiFlags) != 0)
        report(Rule::kParamFlags, who + ": reserved bits");
    if ((def.ui_flags & PF_PUI_CONTROL) != 0 && (def.ui_width <= 0 || def.ui_height <= 0))
        report(Rule::kCustomUi, who + ": a control without a size");
    if (!valueIsDefault(def)) report(Rule::kParamDefault, who + ": value and default differ");

    bool inOrder = true;
    if (def.param_type == PF_Param_FIX_SLIDER)
        inOrder = rangeInOrder(u.fd.valid_min, u.fd.valid_max, u.fd.slider_min, u.fd.slider_max,
                               u.fd.dephault);
    else if (def.param_type == PF_Param_SLIDER)
        inOrder = rangeInOrder(u.sd.valid_min, u.sd.valid_max, u.sd.slider_min, u.sd.slider_max,
                               u.sd.dephault);
    else if (def.param_type == PF_Param_FLOAT_SLIDER)
        inOrder = rangeInOrder(u.fs_d.valid_min, u.fs_d.valid_max, u.fs_d.slider_min,
                               u.fs_d.slider_max, u.fs_d.dephault);
    else if (def.param_type == PF_Param_CHECKBOX)
        inOrder = u.bd.value == 0 || u.bd.value == 1;
    else if (def.param_type == PF_Param_LAYER)
        inOrder = u.ld.dephault == 0 || u.ld.dephault == -1;
    if (!inOrder) report(Rule::kParamRange, who + ": ranges or default");

    if (def.param_type == PF_Param_CHECKBOX && u.bd.u.nameptr == nullptr)
        report(Rule::kParamStrings, who + ": a checkbox without a label");
    if (def.param_type == PF_Param_POPUP) {
        if (u.pd.u.namesptr == nullptr) {
            report(Rule::kParamPopup, who + ": no choices");
        } else if (splitChoices(u.pd.u.namesptr).size() !=
                       static_cast<std::size_t>(u.pd.num_choices < 0 ? 0 : u.pd.num_choices) ||
                   u.pd.dephault < 1 || u.pd.dephault > u.pd.num_choices) {
            report(Rule::kParamPopup, who + ": \"" + u.pd.u.namesptr + "\" with num_choices " +
                                          std::to_string(u.pd.num_choices) + " and default " +
                                          std::to_string(u.pd.dephault));
        }
    }
}

}  // namespace orvin::stand_in
