#include "vector/font/Type1Charstring.h"

#include <algorithm>
#include <limits>

namespace orvin {

namespace {

constexpr int kDeepestCall = 10;
constexpr std::size_t kLongestContour = std::size_t{1} << 20;

constexpr int twoBytes(int second) {
    return 12 << 8 | second;
}

enum Operator : int {
    kHstem = 1,
    kVstem = 3,
    kVmoveto = 4,
    kRlineto = 5,
    kHlineto = 6,
    kVlineto = 7,
    kRrcurveto = 8,
    kClosepath = 9,
    kCallsubr = 10,
    kReturn = 11,
    kHsbw = 13,
    kEndchar = 14,
    kRmoveto = 21,
    kHmoveto = 22,
    kVhcurveto = 30,
    kHvcurveto = 31,
    kDotsection = twoBytes(0),
    kVstem3 = twoBytes(1),
    kHstem3 = twoBytes(2),
    kSeac = twoBytes(6),
    kSbw = twoBytes(7),
    kDiv = twoBytes(12),
    kCallothersubr = twoBytes(16),
    kPop = twoBytes(17),
    kSetcurrentpoint = twoBytes(33),
};

const char* operatorName(int op) {
    switch (op) {
        case kHstem:
            return "hstem";
        case kVstem:
            return "vstem";
        case kVmoveto:
            return "vmoveto";
        case kRlineto:
            return "rlineto";
        case kHlineto:
            return "hlineto";
        case kVlineto:
            return "vlineto";
        case kRrcurveto:
            return "rrcurveto";
        case kClosepath:
            return "closepath";
        case kCallsubr:
            return "callsubr";
        case kReturn:
            return "return";
        case kHsbw:
            return "hsbw";
        case kEndchar:
            return "endchar";
        case kRmoveto:
            return "rmoveto";
        case kHmoveto:
            return "hmoveto";
        case kVhcurveto:
            return "vhcurveto";
        case kHvcurveto:
            return "hvcurveto";
        case kDotsection:
            return "dotsection";
        case kVstem3:
            return "vstem3";
        case kHstem3:
            return "hstem3";
        case kSeac:
            return "seac";
        case kSbw:
            return "sbw";
        case kDiv:
            return "div";
        case kCallothersubr:
            return "callothersubr";
        case kPop:
            return "pop";
        case kSetcurrentpoint:
            return "setcurrentpoint";
        default:
            return nullptr;
    }
}

std::int32_t wrappedSum(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

std::int32_t wrappedDifference(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

struct Item {
    bool isNumber = false;
    std::int32_t value = 0;  // the number, or the operator
};

/// Walks the numbers and operators of a charstring; one that is cut off ends it.
class CharstringCursor {
  public:
    explicit CharstringCursor(std::span<const std::uint8_t> code) : code_(code) {}

    bool next(Item& item) {
        if (at_ >= code_.size()) return false;
        const int v = code_[at_++];
        item.isNumber = v >= 32;
        if (v >= 32 && v <= 246) {
            item.value = v - 139;
            return true;
        }
        const std::size_t more = v == 255 ? 4 : v > 246 || v == 12 ? 1 : 0;
        if (code_.size() - at_ < more) return false;
        if (v == 255) {
            std::uint32_t bits = 0;
            for (std::size_t i = 0; i < more; ++i)
                bits = bits << 8U | code_[at_ + i];
            item.value = static_cast<std::int32_t>(bits);
        } else if (v >= 251) {
            item.value = -(v - 251) * 256 - code_[at_] - 108;
        } else if (v >= 247) {
            item.value = (v - 247) * 256 + code_[at_] + 108;
        } else {
            item.value = v == 12 ? twoBytes(code_[at_]) : v;
        }
        at_ += more;
        return true;
    }

  private:
    std::span<const std::uint8_t> code_;
    std::size_t at_ = 0;
};

void report(const Item& item) {
    if (item.isNumber) {
        fontReport(" %d", item.value);
    } else if (const char* const name = operatorName(item.value)) {
        fontReport(" %s", name);
    } else {
        const bool two = item.value > 255;
        fontReport(" UNKNOWN_CMD(%d,%d)", two ? 12 : item.value, two ? item.value & 255 : 0);
    }
}

}  // namespace

void Type1Charstrings::print(std::span<const std::uint8_t> code) {
    CharstringCursor cursor(code);
    for (Item item; cursor.next(item);)
        report(item);
}

void Type1Charstrings::addSubroutine(std::span<const std::uint8_t> code) {
    subroutines_.push_back({subroutineBytes_.size(), code.size()});
    subroutineBytes_.insert(subroutineBytes_.end(), code.begin(), code.end());
}

void Type1Charstrings::run(std::span<const std::uint8_t> code, FontGlyph& glyph) {
    glyph_ = &glyph;
    x_ = y_ = 0;
    pathOpen_ = inFlex_ = false;
    lastStep_ = Step::kNone;
    depth_ = 0;
    stack_.clear();
    otherStack_.clear();
    contour_.clear();
    interpret(code);
    flushContour();
}

void Type1Charstrings::interpret(std::span<const std::uint8_t> code) {
    CharstringCursor cursor(code);
    const bool reported = reporting();
    for (Item item; cursor.next(item);) {
        if (operationsLeft_ == 0) return;
        --operationsLeft_;
        if (reported) report(item);
        if (item.isNumber) {
            stack_.push_back(item.value);
        } else if (execute(item.value) && !inFlex_) {
            stack_.clear();
        }
    }
}

/// False where the stack stays.
bool Type1Charstrings::execute(int op) {
    const auto a = [this](std::size_t i) { return argument(i); };
    switch (op) {
        case kVmoveto:
            if (inFlex_) {
                const std::int32_t dy = popArgument();
                stack_.insert(stack_.end(), {0, dy});
            } else {
                move(0, a(0));
            }
            return true;
        case kHmoveto:
            if (inFlex_) {
                stack_.push_back(0);
            } else {
                move(a(0), 0);
            }
            return true;
        case kRmoveto:
            if (!inFlex_) move(a(0), a(1));
            return true;
        case kRlineto:
            line(a(0), a(1));
            return true;
        case kHlineto:
            line(a(0), 0);
            return true;
        case kVlineto:
            line(0, a(0));
            return true;
        case kRrcurveto:
            curve(a(0), a(1), a(2), a(3), a(4), a(5));
            return true;
        case kVhcurveto:
            curve(0, a(0), a(1), a(2), a(3), 0);
            return true;
        case kHvcurveto:
            curve(a(0), 0, a(1), a(2), 0, a(3));
            return true;
        case kClosepath:
            closePath();
            return true;
        case kHsbw:
        case kSbw:
            glyph_->leftSideBearing = a(0);
            glyph_->advanceWidth = a(op == kSbw ? 2 : 1);
            x_ = a(0);
            y_ = op == kSbw ? a(1) : 0;
            return true;
        case kSeac:
            accented_.push_back({a(0), a(1), a(2), a(3), a(4), glyph_->code});
            return true;
        case kSetcurrentpoint:
            x_ = a(0);
            y_ = a(1);
            return true;
        case kDiv:
            divide();
            return false;
        case kCallsubr:
            callSubroutine();
            return false;
        case kCallothersubr:
            callOtherSubroutine();
            return false;
        case kPop:
            stack_.push_back(otherStack_.empty() ? -1 : otherStack_.back());
            if (!otherStack_.empty()) otherStack_.pop_back();
            return false;
        case kReturn:
            return false;
        default:
            return operatorName(op) != nullptr;  // hints, endchar
    }
}

// ---- points

void Type1Charstrings::addPoint(std::uint8_t onCurve) {
    if (contour_.size() < kLongestContour) contour_.push_back({x_, y_, onCurve});
    font_.xMin = std::min(font_.xMin, x_);
    font_.xMax = std::max(font_.xMax, x_);
    font_.yMin = std::min(font_.yMin, y_);
    font_.yMax = std::max(font_.yMax, y_);
}

void Type1Charstrings::flushContour() {
    if (!contour_.empty()) font_.table.addContour(*glyph_, contour_);
    contour_.clear();
}

void Type1Charstrings::step(std::int32_t dx, std::int32_t dy, Step kind, std::uint8_t onCurve) {
    if (!pathOpen_) {
        flushContour();
        pathOpen_ = true;
    }
    if (kind != Step::kMove && contour_.empty()) addPoint(1);
    if (kind == Step::kClose) addPoint(0);
    x_ = wrappedSum(x_, dx);
    y_ = wrappedSum(y_, dy);
    if (kind == Step::kClose) addPoint(0);
    if (kind == Step::kMove && lastStep_ == Step::kMove && !contour_.empty()) contour_.pop_back();
    addPoint(onCurve);
    lastStep_ = kind;
}

void Type1Charstrings::curve(std::int32_t dx1, std::int32_t dy1, std::int32_t dx2, std::int32_t dy2,
                             std::int32_t dx3, std::int32_t dy3) {
    step(dx1, dy1, Step::kControl, 0);
    step(dx2, dy2, Step::kControl, 0);
    step(dx3, dy3, Step::kControl, 1);
}

// The current point is where it was before: a moveto that follows starts there.
void Type1Charstrings::closePath() {
    if (contour_.size() > 1) {
        const GlyphPoint first = contour_.front();
        const GlyphPoint last = contour_.back();
        if (first.x != last.x || first.y != last.y) {
            const std::int32_t x = x_;
            const std::int32_t y = y_;
            step(wrappedDifference(first.x, last.x), wrappedDifference(first.y, last.y),
                 Step::kClose, 1);
            x_ = x;
            y_ = y;
        }
    }
    pathOpen_ = false;
    lastStep_ = Step::kNone;
}

// ---- calls

std::int32_t Type1Charstrings::popArgument() {
    if (stack_.empty()) return 0;
    const std::int32_t top = stack_.back();
    stack_.pop_back();
    return top;
}

void Type1Charstrings::callSubroutine() {
    if (stack_.empty() || depth_ > kDeepestCall) return;
    const std::int32_t number = popArgument();
    if (number == 0) {
        if (!inFlex_) return;
        inFlex_ = false;
        flex();
        stack_.clear();
        if (reporting()) fontReport("]FLEX");
    } else if (number == 1) {
        if (inFlex_) return;
        stack_.clear();
        inFlex_ = true;
        if (reporting()) fontReport(" FLEX[");
    } else if (number < 0 || static_cast<std::size_t>(number) >= subroutines_.size()) {
        if (number != 2 && reporting()) fontReport(" >> ERROR: can't find subr: %d <<", number);
    } else if (number != 2) {  // 2 marks a point of a flex: the movetos have collected it
        const Piece piece = subroutines_[static_cast<std::size_t>(number)];
        ++depth_;
        interpret(std::span(subroutineBytes_).subspan(piece.first, piece.count));
        --depth_;
    }
}

void Type1Charstrings::flex() {
    constexpr std::size_t kNumbers = 17;
    if (stack_.size() != kNumbers && reporting())
        fontReport(" >> ERROR: expecting 17 flex points, found: %d <<",
                   static_cast<int>(stack_.size()));
    if (stack_.size() < kNumbers) return;
    const std::vector<std::int32_t>& s = stack_;
    // The first point is the reference point, which the second is relative to.
    curve(wrappedSum(s[0], s[2]), wrappedSum(s[1], s[3]), s[4], s[5], s[6], s[7]);
    curve(s[8], s[9], s[10], s[11], s[12], s[13]);
}

void Type1Charstrings::callOtherSubroutine() {
    otherStack_.clear();
    popArgument();  // its number
    for (std::int32_t count = popArgument(); count > 0 && !stack_.empty(); --count)
        otherStack_.push_back(popArgument());
}

void Type1Charstrings::divide() {
    const std::int64_t a = argument(0);
    const std::int64_t b = argument(1);
    popArgument();
    popArgument();
    stack_.push_back(b == 0 ? std::numeric_limits<std::int32_t>::max()
                            : static_cast<std::int32_t>(a / b));
}

}  // namespace orvin
