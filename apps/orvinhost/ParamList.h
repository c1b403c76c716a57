// The host's own copies of the parameters that the effect added, and their values over time.
#pragma once

#include "host/abi/Params.h"
#include "orvinhost/ImageSource.h"
#include "orvinhost/Rules.h"
#include "orvinhost/Track.h"

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace orvin::stand_in {

struct Param {
    PF_ParamDef def{};                   // as added, then with the looks that the effect changed
    std::string label;                   // copy of a checkbox's label or a button's text
    std::string choices;                 // copy of a popup's choices
    const char* strings{};               // where the effect keeps them
    Track track;                         // its value over time, in the units of the user interface
    std::shared_ptr<ImageSource> layer;  // of a layer parameter; null: none

    /// Name, or the label where the name is empty.
    std::string title() const;
};

class ParamList {
  public:
    using Report = std::function<void(Rule, const std::string&)>;

    ParamList();  // with the input layer at index 0

    /// Takes a copy of `def` at the end of the list and checks it against the rules.
    void add(const PF_ParamDef& def, const Report& report);
    /// Checks of the list as a whole, once PARAMS_SETUP is over. `reported` is num_params.
    void checkComplete(A_long reported, const Report& report) const;
    /// Whether labels and choices are still where they were.
    void checkStrings(const Report& report) const;

    int count() const { return static_cast<int>(params_.size()); }
    Param& operator[](int index) { return params_[static_cast<std::size_t>(index)]; }
    const Param& operator[](int index) const { return params_[static_cast<std::size_t>(index)]; }

    /// By index ("12"), by name or label, or by a name without what it has in parentheses in front
    /// ("Camera Eye X"). Nothing for an unknown or an ambiguous one.
    std::optional<int> find(const std::string& name) const;

    /// The definition with its value at a frame; a layer parameter comes without pixels.
    PF_ParamDef valueAt(int index, double frame) const;
    /// Takes over a value that the effect changed: the constant, or a key at `frame`.
    void takeValue(int index, double frame, const PF_ParamDef& def);
    /// Numbers in a parameter's value: 1, 2 for a point, 3 for a colour or 3-D point, 0 for none.
    static std::size_t valueCount(PF_ParamType type);
    /// Whether two definitions of one type hold the same value.
    static bool sameValue(const PF_ParamDef& a, const PF_ParamDef& b);

    nlohmann::ordered_json json() const;

  private:
    std::vector<Param> params_;
};

/// The value in a definition, in the units of the user interface (colours red, green, blue).
Values readValue(const PF_ParamDef& def);
/// Puts a value into a definition: rounded to its resolution, held inside its type's range.
void writeValue(PF_ParamDef& def, const Values& values);
/// "layer", "popup", ...; "unknown" for others.
const char* paramTypeName(PF_ParamType type);
/// Choices of a popup, divided at the bars.
std::vector<std::string> splitChoices(const std::string& choices);

/// The rules for one definition. Not part of ParamList for its length only.
void checkDefinition(const PF_ParamDef& def, int index, const ParamList::Report& report);

}  // namespace orvin::stand_in
