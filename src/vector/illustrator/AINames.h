// AINames: names for the objects of one file, beside those that a scene has already.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace orvin {

class SceneX;

class AINames {
  public:
    explicit AINames(const SceneX& scene);

    /// The largest number behind `prefix` in a name; 0 if none.
    int highestNumber(std::string_view prefix) const;

    /// `name` itself while it is free, else with the number behind it that comes next ("A", "A1",
    /// "A2").
    std::string numberedIfTaken(std::string_view name);

    /// `name` itself while it is free, else with a point and a number ("A", "A.1"). At most 255
    /// bytes.
    std::string unique(std::string_view name);

  private:
    void note(std::string_view name);

    std::unordered_set<std::string> taken_;
    std::unordered_map<std::string, int> highest_;  // by prefix
};

}  // namespace orvin
