// AIColors: the colours of Illustrator art: those in force, and all that were met.
#pragma once

#include <array>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace orvin {

/// Red, green, blue, alpha. Numbers are as in the art: mostly, but not surely, 0 to 1.
using AIColor = std::array<float, 4>;

inline constexpr AIColor kFirstAIColor{0.9F, 0.9F, 0.9F, 1.0F};

/// One distinct colour.
struct AIColorRecord {
    std::string name;  // "AIColor 1", "AIColor 2", ... in order of meeting
    AIColor color{};
    int refCount = 0;  // how often it was met
};

class AIColors {
  public:
    enum class Use { kFill, kStroke };

    /// A colour that is set since clearUse().
    struct InForce {
        AIColor color = kFirstAIColor;
        bool set = false;
    };

    const InForce& fill() const { return fill_; }
    const InForce& stroke() const { return stroke_; }
    const std::vector<AIColorRecord>& list() const { return list_; }

    void grayColor(float gray, Use use) { setColor({gray, gray, gray, 1.0F}, use); }
    /// Cyan, magenta, yellow, black; each of red, green and blue is what ink and black leave.
    void cmykColor(const std::array<float, 4>& ink, Use use);
    void rgbColor(const std::array<float, 3>& rgb, Use use);
    /// The colour of the last rgbColor(), of either use.
    void lastRgbColor(Use use) { rgbColor(lastRgb_, use); }

    /// Nothing has been set since now. The colours stay in force.
    void clearUse() { fill_.set = stroke_.set = false; }
    void clearColors() { *this = {}; }

  private:
    void setColor(const AIColor& color, Use use);

    InForce fill_;
    InForce stroke_;
    std::array<float, 3> lastRgb_{kFirstAIColor[0], kFirstAIColor[1], kFirstAIColor[2]};
    std::vector<AIColorRecord> list_;
    std::map<AIColor, std::size_t> places_;  // in the list
};

}  // namespace orvin
