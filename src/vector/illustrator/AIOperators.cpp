// What single lines of Illustrator art mean.
#include <array>
#include <utility>

#include "vector/illustrator/AIParser.h"

namespace orvin {

namespace {

using Use = AIColors::Use;

struct Word {
    std::string_view text;
    AICode code;
};

constexpr Word kComments[] = {
    {"%AI3_Note:", AICode::kDataBegin},       {"%%Note:", AICode::kDataBegin},
    {"%AI5_BeginLayer", AICode::kLayerBegin}, {"%AI5_EndLayer--", AICode::kLayerEnd},
    {"%%PageTrailer", AICode::kPageEnd},      {"%AI3_BeginCrops", AICode::kCropsBegin},
    {"%AI3_EndCrops", AICode::kCropsEnd},
};

constexpr Word kPairs[] = {
    {"*u", AICode::kCompoundBegin}, {"*U", AICode::kCompoundEnd}, {"Ln", AICode::kLayerName},
    {"ln", AICode::kLayerName},     {"Lb", AICode::kLayerState},  {"lb", AICode::kLayerState},
    {"Xa", AICode::kRgbFill},       {"Xx", AICode::kRgbFill},     {"XA", AICode::kRgbStroke},
    {"XX", AICode::kRgbStroke},
};

/// Each letter of a text by itself.
constexpr Word kLetters[] = {
    {"m", AICode::kMove},         {"lL", AICode::kLine},       {"cC", AICode::kCurve},
    {"vV", AICode::kCurveToV},    {"yY", AICode::kCurveToY},   {"s", AICode::kCloseStroke},
    {"S", AICode::kStroke},       {"fb", AICode::kCloseFill},  {"FB", AICode::kFill},
    {"n", AICode::kCloseNoPaint}, {"N*", AICode::kNoPaint},    {"u", AICode::kGroupBegin},
    {"U", AICode::kGroupEnd},     {"g", AICode::kGrayFill},    {"G", AICode::kGrayStroke},
    {"kx", AICode::kCmykFill},    {"KX", AICode::kCmykStroke}, {"q", AICode::kClipBegin},
    {"Q", AICode::kClipEnd},
};

AICode codeOfLetter(char letter) {
    for (const Word& word : kLetters)
        if (word.text.find(letter) != std::string_view::npos) return word.code;
    return AICode::kUnknown;
}

AICode codeOf(std::string_view op) {
    if (op.size() == 1) return codeOfLetter(op[0]);
    for (const Word& word : kPairs)
        if (op == word.text) return word.code;
    return AICode::kUnknown;
}

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

}  // namespace

AICode AIParser::commentCode(std::string_view line) {
    if (line[0] != '%') return AICode::kUnknown;
    for (const Word& comment : kComments) {
        if (line != comment.text) continue;
        if (comment.code == AICode::kLayerBegin) beginLayer();
        if (comment.code == AICode::kLayerEnd) endLayer();
        if (comment.code == AICode::kCropsBegin) inCrops_ = true;
        if (comment.code == AICode::kCropsEnd) inCrops_ = false;
        return comment.code;
    }
    return AICode::kUnknown;
}

AICode AIParser::operatorCode(std::string_view line) {
    if (inCrops_) return AICode::kUnknown;
    tokens_.split(line);
    if (tokens_.empty() || tokens_.isComment()) return AICode::kUnknown;
    const AICode code = codeOf(tokens_.op());
    switch (code) {
        case AICode::kLayerName:
            layerNamed(line);
            break;
        case AICode::kLayerState:
            skipping_ = !tokens_.arguments().empty() && tokens_.arguments()[0] == "0";
            break;
        case AICode::kClipBegin:
        case AICode::kClipEnd:
            inClipGroup_ = code == AICode::kClipBegin;
            break;
        default:
            if (!skips()) act(code);
    }
    return code;
}

void AIParser::act(AICode code) {
    switch (code) {
        case AICode::kMove:
        case AICode::kLine:
        case AICode::kCurve:
        case AICode::kCurveToV:
        case AICode::kCurveToY:
            drawTo(code);
            break;
        case AICode::kCloseStroke:
        case AICode::kStroke:
            paint(Paint::kStroke);
            break;
        case AICode::kFill:
        case AICode::kCloseFill:
            paint(Paint::kFill);
            break;
        case AICode::kCloseNoPaint:
        case AICode::kNoPaint:
            paint(tokens_.op() != "*" && (pathBeforeLayer_ || inClipGroup_) ? Paint::kFill
                                                                            : Paint::kNone);
            break;
        case AICode::kGroupBegin:
            if (!options_.loadByLayers && !options_.flattenGroups) beginGroup();
            break;
        case AICode::kGroupEnd:
            if (!options_.loadByLayers && !options_.flattenGroups) endGroup(Kind::kGroup);
            break;
        case AICode::kCompoundBegin:
            if (!options_.loadByLayers) beginGroup();
            break;
        case AICode::kCompoundEnd:
            if (!options_.loadByLayers) endGroup(Kind::kCompound);
            break;
        case AICode::kGrayFill:
        case AICode::kGrayStroke:
        case AICode::kCmykFill:
        case AICode::kCmykStroke:
        case AICode::kRgbFill:
        case AICode::kRgbStroke:
            setColor(code);
            break;
        default:
            break;
    }
}

void AIParser::drawTo(AICode code) {
    const std::size_t points = code == AICode::kCurve                                   ? 3
                               : code == AICode::kCurveToV || code == AICode::kCurveToY ? 2
                                                                                        : 1;
    std::array<float, 6> numbers{};
    if (!tokens_.numbers(std::span(numbers).first(points * 2))) return;
    const auto point = [&](std::size_t i) {
        return Vec2{static_cast<double>(numbers[2 * i]), static_cast<double>(numbers[2 * i + 1])};
    };
    if (code == AICode::kMove) {
        pathBeforeLayer_ = !sawLayerName_;
        path_.setPoint(point(0));
        return;
    }
    if (!path_.hasPoint()) return;
    if (!path_.isOpen() && !profileOpen()) newProfile();
    if (points == 1)
        path_.lineTo(point(0));
    else if (points == 2)
        path_.curveTo(point(0), point(1));
    else
        path_.curveTo(point(0), point(1), point(2));
}

void AIParser::setColor(AICode code) {
    std::array<float, 4> ink{};
    std::array<float, 3> rgb{};
    switch (code) {
        case AICode::kGrayFill:
        case AICode::kGrayStroke:
            if (tokens_.numbers(std::span(ink).first(1)))
                colors_.grayColor(ink[0], code == AICode::kGrayFill ? Use::kFill : Use::kStroke);
            break;
        case AICode::kCmykFill:
        case AICode::kCmykStroke:
            if (tokens_.numbers(ink))
                colors_.cmykColor(ink, code == AICode::kCmykFill ? Use::kFill : Use::kStroke);
            break;
        default: {
            const Use use = code == AICode::kRgbFill ? Use::kFill : Use::kStroke;
            // The longer forms name a colour of the file's own, which was set before.
            if (tokens_.arguments().size() != rgb.size())
                colors_.lastRgbColor(use);
            else if (tokens_.numbers(rgb))
                colors_.rgbColor(rgb, use);
        }
    }
}

void AIParser::traceCode(AICode code, std::string_view line) const {
    if (!trace_) return;
    switch (code) {
        case AICode::kDataBegin:
            return trace_("Data begin", {});
        case AICode::kLayerBegin:
            return trace_("Layer begin", {});
        case AICode::kLayerEnd:
            return trace_("Layer end", {});
        case AICode::kPageEnd:
            return trace_("Page end", {});
        case AICode::kCurve:
            return trace_("Curve to--", line);
        case AICode::kLine:
            return trace_("Line to--", line);
        case AICode::kMove:
            return trace_("Move to--", line);
        case AICode::kCloseStroke:
            return trace_("Fill", line);
        case AICode::kUnknown:
            return trace_("Unknown-- ", line);
        default:
            return trace_("Implemented (but no description)-- ", line);
    }
}

std::string unescapeName(std::string_view text) {
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\\' && i + 1 < text.size()) {
            c = text[++i];
            if (i + 2 < text.size() && isOctal(c) && isOctal(text[i + 1]) && isOctal(text[i + 2])) {
                c = static_cast<char>(
                    ((c - '0') * 64 + (text[i + 1] - '0') * 8 + (text[i + 2] - '0')) & 0xFF);
                i += 2;
                if (c == '\0') break;
                name += c;
                continue;
            }
        }
        if (c == '\0') break;
        name += c == '"' ? '\'' : c;
    }
    return name;
}

}  // namespace orvin
