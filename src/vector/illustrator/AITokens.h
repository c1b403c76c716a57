// AITokens: one line of art, split at white space. The last token is the operator, those before it
// are its arguments.
#pragma once

#include <array>
#include <cmath>
#include <span>
#include <string_view>

#include "toolkit/Numbers.h"
#include "vector/illustrator/AILineReader.h"

namespace orvin {

class AITokens {
  public:
    /// The tokens are views into `line`, of at most AILineReader::kLongestLine characters.
    void split(std::string_view line) {
        count_ = 0;
        while (count_ < tokens_.size()) {
            const std::size_t start = line.find_first_not_of(kWhiteSpace);
            if (start == std::string_view::npos) return;
            line.remove_prefix(start);
            tokens_[count_] = line.substr(0, line.find_first_of(kWhiteSpace));
            line.remove_prefix(tokens_[count_].size());
            ++count_;
        }
    }

    bool empty() const { return count_ == 0; }
    bool isComment() const { return count_ > 0 && tokens_[0].starts_with('%'); }
    std::string_view op() const { return count_ > 0 ? tokens_[count_ - 1] : std::string_view(); }
    std::span<const std::string_view> arguments() const {
        return std::span(tokens_).first(count_ > 0 ? count_ - 1 : 0);
    }

    /// Fills `values` from the first arguments, in single precision. False where there are fewer,
    /// or where one is no finite number.
    bool numbers(std::span<float> values) const {
        if (arguments().size() < values.size()) return false;
        for (std::size_t i = 0; i < values.size(); ++i) {
            double value = 0.0;
            if (!readDouble(tokens_[i], value) || !(std::abs(value) <= kLargestFloat)) return false;
            values[i] = static_cast<float>(value);
        }
        return true;
    }

  private:
    static constexpr std::string_view kWhiteSpace = " \t\v\f\r\n";
    static constexpr double kLargestFloat = 3.4028234e38;

    std::array<std::string_view, AILineReader::kLongestLine / 2 + 1> tokens_;
    std::size_t count_ = 0;
};

}  // namespace orvin
