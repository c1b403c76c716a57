#include "orvinhost/KeysFile.h"

#include "common/Options.h"
#include "orvinhost/JsonValue.h"
#include "toolkit/Numbers.h"

#include <algorithm>

namespace orvin::stand_in {
namespace {

using nlohmann::json;

constexpr double kFixedOne = 65536.0;

struct Range {
    double min = 0.0;
    double max = 0.0;
    bool whole = false;
};

Range validRange(const PF_ParamDef& def) {
    const PF_ParamDefUnion& u = def.u;
    switch (def.param_type) {
        case PF_Param_FIX_SLIDER:
            return {u.fd.valid_min / kFixedOne, u.fd.valid_max / kFixedOne};
        case PF_Param_SLIDER:
            return {static_cast<double>(u.sd.valid_min), static_cast<double>(u.sd.valid_max), true};
        case PF_Param_FLOAT_SLIDER:
            return {static_cast<double>(u.fs_d.valid_min), static_cast<double>(u.fs_d.valid_max)};
        case PF_Param_CHECKBOX:
            return {0.0, 1.0, true};
        case PF_Param_POPUP:
            return {1.0, static_cast<double>(u.pd.num_choices), true};
        case PF_Param_COLOR:
            return {0.0, 255.0};
        default:
            return {-32768.0, 32767.0};
    }
}

std::string text(double value) {
    char buffer[kMaxNumberText];
    return std::string(buffer, std::to_chars(buffer, buffer + kMaxNumberText, value).ptr);
}

// A popup's choice by its words, a colour as "#rrggbb": as numbers.
json plainValue(const json& value, const Param& param, const std::string& what) {
    if (!value.is_string()) return value;
    const std::string word = value.get<std::string>();
    if (param.def.param_type == PF_Param_POPUP) {
        const std::vector<std::string> choices = splitChoices(param.choices);
        const auto found = std::find(choices.begin(), choices.end(), word);
        if (found == choices.end())
            throw apps::Failure(what + ": \"" + word + "\" isn't one of \"" + param.choices + "\"");
        return found - choices.begin() + 1;
    }
    unsigned color = 0;
    const char* end = word.data() + word.size();
    if (param.def.param_type != PF_Param_COLOR || word.size() != 7 || word[0] != '#' ||
        std::from_chars(word.data() + 1, end, color, 16).ptr != end)
        throw apps::Failure(what + ": \"" + word + "\" isn't a value");
    return json::array({color >> 16 & 255u, color >> 8 & 255u, color & 255u});
}

json plainKeys(const json& value, const Param& param, const std::string& what) {
    if (!isKeyList(value)) return plainValue(value, param, what);
    json keys = value;
    for (json& key : keys)
        if (key.is_array() && key.size() == 2) key[1] = plainValue(key[1], param, what);
    return keys;
}

void checkRange(const Track& track, const Param& param, const std::string& what) {
    const Range range = validRange(param.def);
    for (const Track::Key& key : track.keys())
        for (const double value : key.values) {
            if (value < range.min || value > range.max)
                throw apps::Failure(what + ": " + text(value) + " is outside " + text(range.min) +
                                    " to " + text(range.max));
            if (range.whole && value != static_cast<double>(static_cast<long long>(value)))
                throw apps::Failure(what + ": " + text(value) + " isn't a whole number");
        }
}

}  // namespace

std::vector<int> applyKeys(const json& keys, const std::string& file, ParamList& params,
                           const std::map<std::string, std::shared_ptr<ImageSource>>& layers) {
    if (!keys.is_object())
        throw apps::Failure(file + ": an object of parameter names was expected");
    std::vector<int> set;
    for (const auto& entry : keys.items()) {
        const std::string what = file + ": \"" + entry.key() + "\"";
        const std::optional<int> index = params.find(entry.key());
        if (!index || *index == 0) throw apps::Failure(what + ": no parameter has this name");
        Param& param = params[*index];
        if (param.def.param_type == PF_Param_LAYER) {
            if (entry.value().is_null()) {
                param.layer = nullptr;
            } else {
                const auto layer = entry.value().is_string()
                                       ? layers.find(entry.value().get<std::string>())
                                       : layers.end();
                if (layer == layers.end())
                    throw apps::Failure(what + ": the name of a layer of the comp was expected");
                param.layer = layer->second;
            }
            set.push_back(*index);
            continue;
        }
        const std::size_t count = ParamList::valueCount(param.def.param_type);
        if (count == 0)
            throw apps::Failure(what + ": a " + paramTypeName(param.def.param_type) +
                                " has no value");
        Track track = jsonTrack(plainKeys(entry.value(), param, what), count, what);
        checkRange(track, param, what);
        if (track.varies() && (param.def.flags & PF_ParamFlag_CANNOT_TIME_VARY) != 0)
            throw apps::Failure(what + ": this parameter can't be animated");
        if (param.def.param_type == PF_Param_POPUP || param.def.param_type == PF_Param_CHECKBOX ||
            (param.def.flags & PF_ParamFlag_CANNOT_INTERP) != 0)
            track.holdKeys();
        param.track = std::move(track);
        set.push_back(*index);
    }
    std::sort(set.begin(), set.end());
    set.erase(std::unique(set.begin(), set.end()), set.end());
    return set;
}

}  // namespace orvin::stand_in
