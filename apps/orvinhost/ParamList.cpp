#include "orvinhost/ParamList.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace orvin::stand_in {
namespace {

constexpr double kFixedOne = 65536.0;

PF_Fixed toFixed(double value) {
    constexpr double kMax = 2147483647.0;
    return static_cast<PF_Fixed>(std::clamp(std::round(value * kFixedOne), -kMax - 1.0, kMax));
}

A_long toWhole(double value) {
    return static_cast<A_long>(std::clamp(std::round(value), -2147483648.0, 2147483647.0));
}

A_u_char toByte(double value) {
    return static_cast<A_u_char>(std::clamp(std::round(value), 0.0, 255.0));
}

std::string nameOf(const PF_ParamDef& def) {
    return std::string(def.name, strnlen(def.name, sizeof def.name));
}

std::string withoutPrefix(const std::string& name) {
    const std::size_t close = name.find(") ");
    return !name.empty() && name[0] == '(' && close != std::string::npos ? name.substr(close + 2)
                                                                         : name;
}

}  // namespace

std::string Param::title() const {
    const std::string name = nameOf(def);
    return name.empty() ? label : name;
}

ParamList::ParamList() {
    Param input;
    input.def.param_type = PF_Param_LAYER;
    input.def.u.ld.dephault = -1;
    params_.push_back(std::move(input));
}

void ParamList::add(const PF_ParamDef& def, const Report& report) {
    const int index = count();
    checkDefinition(def, index, report);
    for (const Param& other : params_)
        if (&other != &params_.front() && other.def.uu.id == def.uu.id)
            report(Rule::kParamId, "parameter " + std::to_string(index) + " has the id " +
                                       std::to_string(def.uu.id) + " of another");
    Param param;
    param.def = def;
    param.def.name[sizeof def.name - 1] = '\0';
    if (def.param_type == PF_Param_CHECKBOX) param.strings = def.u.bd.u.nameptr;
    if (def.param_type == PF_Param_POPUP) param.strings = def.u.pd.u.namesptr;
    if (def.param_type == PF_Param_BUTTON) param.strings = def.u.button_d.u.namesptr;
    if (param.strings != nullptr)
        (def.param_type == PF_Param_POPUP ? param.choices : param.label) = param.strings;
    if (valueCount(def.param_type) > 0) param.track = Track(readValue(def));
    const bool steps = def.param_type == PF_Param_POPUP || def.param_type == PF_Param_CHECKBOX;
    if (steps || (def.flags & PF_ParamFlag_CANNOT_INTERP) != 0) param.track.holdKeys();
    params_.push_back(std::move(param));
}

void ParamList::checkComplete(A_long reported, const Report& report) const {
    if (reported != count())
        report(Rule::kParamCount, "num_params is " + std::to_string(reported) + ", with " +
                                      std::to_string(count() - 1) + " added");
    int depth = 0;
    for (int i = 1; i < count(); ++i) {
        const PF_ParamType type = (*this)[i].def.param_type;
        if (type == PF_Param_GROUP_START) ++depth;
        if (type == PF_Param_GROUP_END && --depth < 0) {
            report(Rule::kParamGroups, "group end " + std::to_string(i) + " without a start");
            depth = 0;
        }
    }
    if (depth > 0) report(Rule::kParamGroups, std::to_string(depth) + " group(s) without an end");
}

void ParamList::checkStrings(const Report& report) const {
    for (int i = 1; i < count(); ++i) {
        const Param& param = (*this)[i];
        if (param.strings == nullptr) continue;
        const std::string& copy = param.choices.empty() ? param.label : param.choices;
        if (std::strncmp(param.strings, copy.c_str(), copy.size() + 1) != 0)
            report(Rule::kParamStrings, "text of parameter " + std::to_string(i) + " (\"" +
                                            param.title() + "\") changed");
    }
}

std::optional<int> ParamList::find(const std::string& name) const {
    int index = 0;
    const char* end = name.data() + name.size();
    const auto number = std::from_chars(name.data(), end, index);
    if (number.ec == std::errc{} && number.ptr == end)
        return index >= 0 && index < count() ? std::optional<int>(index) : std::nullopt;
    for (const bool whole : {true, false}) {
        std::optional<int> found;
        for (int i = 1; i < count(); ++i) {
            const std::string title = (*this)[i].title();
            if (title.empty() || (whole ? title : withoutPrefix(title)) != name) continue;
            if (found) return std::nullopt;
            found = i;
        }
        if (found) return found;
    }
    return std::nullopt;
}

PF_ParamDef ParamList::valueAt(int index, double frame) const {
    const Param& param = (*this)[index];
    PF_ParamDef def = param.def;
    if (!param.track.empty()) writeValue(def, param.track.at(frame));
    if (def.param_type == PF_Param_CHECKBOX) def.u.bd.u.nameptr = param.label.c_str();
    if (def.param_type == PF_Param_POPUP) def.u.pd.u.namesptr = param.choices.c_str();
    if (def.param_type == PF_Param_BUTTON) def.u.button_d.u.namesptr = param.label.c_str();
    def.uu.change_flags = PF_ChangeFlag_NONE;
    return def;
}

void ParamList::takeValue(int index, double frame, const PF_ParamDef& def) {
    Param& param = (*this)[index];
    if (param.track.empty()) return;
    const Values values = readValue(def);
    if (!param.track.varies()) {
        param.track = Track(values);
        return;
    }
    std::vector<Track::Key> keys = param.track.keys();
    keys.push_back({frame, values});
    param.track = Track(std::move(keys), param.track.between());
    if (param.def.param_type == PF_Param_POPUP || param.def.param_type == PF_Param_CHECKBOX)
        param.track.holdKeys();
}

std::size_t ParamList::valueCount(PF_ParamType type) {
    switch (type) {
        case PF_Param_SLIDER:
        case PF_Param_FIX_SLIDER:
        case PF_Param_ANGLE:
        case PF_Param_CHECKBOX:
        case PF_Param_POPUP:
        case PF_Param_FLOAT_SLIDER:
            return 1;
        case PF_Param_POINT:
            return 2;
        case PF_Param_COLOR:
        case PF_Param_POINT_3D:
            return 3;
        default:
            return 0;
    }
}

bool ParamList::sameValue(const PF_ParamDef& a, const PF_ParamDef& b) {
    return readValue(a) == readValue(b);
}

Values readValue(const PF_ParamDef& def) {
    const PF_ParamDefUnion& u = def.u;
    switch (def.param_type) {
        case PF_Param_SLIDER:
            return {static_cast<double>(u.sd.value)};
        case PF_Param_FIX_SLIDER:
            return {u.fd.value / kFixedOne};
        case PF_Param_ANGLE:
            return {u.ad.value / kFixedOne};
        case PF_Param_CHECKBOX:
            return {static_cast<double>(u.bd.value)};
        case PF_Param_POPUP:
            return {static_cast<double>(u.pd.value)};
        case PF_Param_FLOAT_SLIDER:
            return {u.fs_d.value};
        case PF_Param_POINT:
            return {u.td.x_value / kFixedOne, u.td.y_value / kFixedOne};
        case PF_Param_COLOR:
            return {static_cast<double>(u.cd.value.red), static_cast<double>(u.cd.value.green),
                    static_cast<double>(u.cd.value.blue)};
        case PF_Param_POINT_3D:
            return {u.point3d_d.x_value, u.point3d_d.y_value, u.point3d_d.z_value};
        default:
            return {};
    }
}

void writeValue(PF_ParamDef& def, const Values& values) {
    PF_ParamDefUnion& u = def.u;
    if (values.size() != ParamList::valueCount(def.param_type)) return;
    switch (def.param_type) {
        case PF_Param_SLIDER:
            u.sd.value = toWhole(values[0]);
            break;
        case PF_Param_FIX_SLIDER:
            u.fd.value = toFixed(values[0]);
            break;
        case PF_Param_ANGLE:
            u.ad.value = toFixed(values[0]);
            break;
        case PF_Param_CHECKBOX:
            u.bd.value = values[0] != 0.0 ? 1 : 0;
            break;
        case PF_Param_POPUP:
            u.pd.value = toWhole(values[0]);
            break;
        case PF_Param_FLOAT_SLIDER:
            u.fs_d.value = values[0];
            break;
        case PF_Param_POINT:
            u.td.x_value = toFixed(values[0]);
            u.td.y_value = toFixed(values[1]);
            break;
        case PF_Param_COLOR:
            u.cd.value = {255, toByte(values[0]), toByte(values[1]), toByte(values[2])};
            break;
        case PF_Param_POINT_3D:
            u.point3d_d.x_value = values[0];
            u.point3d_d.y_value = values[1];
            u.point3d_d.z_value = values[2];
            break;
        default:
            break;
    }
}

const char* paramTypeName(PF_ParamType type) {
    static constexpr const char* kNames[] = {
        "layer",        "slider",         "fixed slider", "angle",       "checkbox",
        "color",        "point",          "popup",        "custom",      "no data",
        "float slider", "arbitrary data", "path",         "group start", "group end",
        "button",       "unknown",        "unknown",      "3d point"};
    return type >= 0 && type < static_cast<int>(std::size(kNames)) ? kNames[type] : "unknown";
}

std::vector<std::string> splitChoices(const std::string& choices) {
    std::vector<std::string> parts(1);
    for (const char c : choices) {
        if (c == '|')
            parts.emplace_back();
        else
            parts.back().push_back(c);
    }
    return parts;
}

nlohmann::ordered_json ParamList::json() const {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (int i = 0; i < count(); ++i) {
        const Param& param = (*this)[i];
        const PF_ParamDef& def = param.def;
        const PF_ParamDefUnion& u = def.u;
        nlohmann::ordered_json entry;
        entry["index"] = i;
        if (i > 0) entry["id"] = def.uu.id;
        entry["type"] = paramTypeName(def.param_type);
        entry["name"] = i == 0 ? std::string("input layer") : nameOf(def);
        if (!param.label.empty()) entry["label"] = param.label;
        if (!param.choices.empty()) entry["choices"] = splitChoices(param.choices);
        const Values initial = readValue(def);
        if (initial.size() == 1) entry["default"] = initial[0];
        if (initial.size() > 1) entry["default"] = initial;
        const auto range = [&entry](double validMin, double validMax, double min, double max) {
            entry["valid"] = {validMin, validMax};
            entry["slider"] = {min, max};
        };
        if (def.param_type == PF_Param_FIX_SLIDER) {
            range(u.fd.valid_min / kFixedOne, u.fd.valid_max / kFixedOne,
                  u.fd.slider_min / kFixedOne, u.fd.slider_max / kFixedOne);
            entry["precision"] = u.fd.precision;
        } else if (def.param_type == PF_Param_FLOAT_SLIDER) {
            range(static_cast<double>(u.fs_d.valid_min), static_cast<double>(u.fs_d.valid_max),
                  static_cast<double>(u.fs_d.slider_min), static_cast<double>(u.fs_d.slider_max));
            entry["precision"] = u.fs_d.precision;
        } else if (def.param_type == PF_Param_SLIDER) {
            range(u.sd.valid_min, u.sd.valid_max, u.sd.slider_min, u.sd.slider_max);
        } else if (def.param_type == PF_Param_LAYER) {
            entry["default"] = u.ld.dephault == -1 ? "own layer" : "none";
        }
        entry["flags"] = def.flags;
        entry["ui_flags"] = def.ui_flags;
        if (def.ui_width != 0 || def.ui_height != 0)
            entry["ui_size"] = {def.ui_width, def.ui_height};
        entry["animates"] =
            valueCount(def.param_type) > 0 && (def.flags & PF_ParamFlag_CANNOT_TIME_VARY) == 0;
        list.push_back(std::move(entry));
    }
    return list;
}

}  // namespace orvin::stand_in
