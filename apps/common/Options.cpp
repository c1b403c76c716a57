#include "common/Options.h"

#include "toolkit/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>
#include <optional>

namespace orvin::apps {
namespace {

const OptionSpec* findOption(const CommandSpec& command, std::string_view name) {
    for (const OptionSpec& option : command.options)
        if (option.name == name) return &option;
    return nullptr;
}

[[noreturn]] void badValue(std::string_view what, std::string_view text, std::string_view wanted) {
    throw UsageError(std::string(what) + ": \"" + std::string(text) + "\" isn't " +
                     std::string(wanted));
}

// The whole text as a number; nothing left over.
std::optional<int> wholeText(std::string_view text) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (text.empty() || result.ec != std::errc{} || result.ptr != end) return std::nullopt;
    return value;
}

std::optional<double> realText(std::string_view text) {
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (text.empty() || result.ec != std::errc{} || result.ptr != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::string numberText(double value) {
    char text[kMaxNumberText];
    return std::string(text, std::to_chars(text, text + kMaxNumberText, value).ptr);
}

std::string rangeText(double min, double max) {
    return "from " + numberText(min) + " to " + numberText(max);
}

}  // namespace

OptionSpec verboseOption() {
    return {"--verbose", "",
            "shows the reports of geometry, fonts and renderer, on standard error"};
}

std::string ParsedOptions::value(std::string_view name, std::string_view fallback) const {
    const auto found = values_.find(name);
    return found == values_.end() ? std::string(fallback) : found->second.back();
}

std::vector<std::string> ParsedOptions::all(std::string_view name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? std::vector<std::string>() : found->second;
}

ParsedOptions parseOptions(const CommandSpec& command, std::span<const std::string> arguments) {
    ParsedOptions parsed;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (!optionsEnded && argument == "--") {
            optionsEnded = true;
            continue;
        }
        if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
            parsed.positional_.push_back(argument);
            continue;
        }
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const OptionSpec* option = findOption(command, name);
        if (option == nullptr) throw UsageError("unknown option " + name);
        std::string value;
        if (option->value.empty()) {
            if (equals != std::string::npos) throw UsageError(name + " takes no value");
        } else if (equals != std::string::npos) {
            value = argument.substr(equals + 1);
        } else if (i + 1 < arguments.size()) {
            value = arguments[++i];
        } else {
            throw UsageError(name + " wants a value: " + option->value);
        }
        parsed.values_[name].push_back(value);
    }
    const int count = static_cast<int>(parsed.positional_.size());
    if (count < command.minPositional) throw UsageError("an argument is missing");
    if (count > command.maxPositional)
        throw UsageError("unexpected argument \"" +
                         parsed.positional_[static_cast<std::size_t>(command.maxPositional)] +
                         "\"");
    return parsed;
}

std::string usageLine(std::string_view program, const CommandSpec& command) {
    std::string line = "usage: " + std::string(program) + " " + command.name;
    if (!command.arguments.empty()) line += " " + command.arguments;
    if (!command.options.empty()) line += " [options]";
    return line;
}

std::string commandHelp(std::string_view program, const CommandSpec& command) {
    std::string text = usageLine(program, command) + "\n\n" + command.summary + "\n";
    std::size_t column = 0;
    for (const OptionSpec& option : command.options)
        column = std::max(column, option.name.size() + option.value.size() + 1);
    if (!command.options.empty()) text += "\noptions:\n";
    for (const OptionSpec& option : command.options) {
        std::string left = option.name;
        if (!option.value.empty()) left += " " + option.value;
        left.resize(column, ' ');
        text += "  " + left + "  " + option.help + "\n";
    }
    if (!command.examples.empty()) text += "\nexamples:\n";
    for (const std::string& example : command.examples)
        text += "  " + example + "\n";
    return text;
}

std::string programHelp(std::string_view program, std::string_view purpose,
                        std::span<const CommandSpec> commands) {
    std::string text = "usage: " + std::string(program) + " COMMAND [arguments] [options]\n\n" +
                       std::string(purpose) + "\n\ncommands:\n";
    std::size_t column = 0;
    for (const CommandSpec& command : commands)
        column = std::max(column, command.name.size());
    for (const CommandSpec& command : commands) {
        std::string name = command.name;
        name.resize(column, ' ');
        text += "  " + name + "  " + command.summary.substr(0, command.summary.find('\n')) + "\n";
    }
    text += "\n\"" + std::string(program) + " COMMAND --help\" tells all of a command.\n";
    text += "Exit status: 0 done, 1 failed (a line on standard error), 2 usage.\n";
    return text;
}

std::string pngOption(std::string_view text, std::string_view what) {
    std::string ending(text.substr(text.size() - std::min<std::size_t>(text.size(), 4)));
    for (char& c : ending)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (ending != ".png") badValue(what, text, "the name of a PNG file: it ends in .png");
    return std::string(text);
}

int wholeOption(std::string_view text, std::string_view what, int min, int max) {
    const std::optional<int> value = wholeText(text);
    if (!value || *value < min || *value > max)
        badValue(what, text, "a whole number " + rangeText(min, max));
    return *value;
}

double realOption(std::string_view text, std::string_view what, double min, double max) {
    const std::optional<double> value = realText(text);
    if (!value || *value < min || *value > max)
        badValue(what, text, "a number " + rangeText(min, max));
    return *value;
}

Size sizeOption(std::string_view text, std::string_view what) {
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) badValue(what, text, "WIDTHxHEIGHT");
    return {wholeOption(text.substr(0, cross), what, 1, 30000),
            wholeOption(text.substr(cross + 1), what, 1, 30000)};
}

Ratio ratioOption(std::string_view text, std::string_view what) {
    constexpr int kMax = 1000000;
    const std::size_t slash = text.find('/');
    if (slash != std::string_view::npos)
        return {wholeOption(text.substr(0, slash), what, 1, kMax),
                wholeOption(text.substr(slash + 1), what, 1, kMax)};
    const double value = realOption(text, what, 0.001, kMax);
    if (value == std::floor(value)) return {static_cast<int>(value), 1};
    for (const int base : {24, 30, 48, 60, 120})
        if (std::abs(value - base * 1000.0 / 1001.0) < 0.005) return {base * 1000, 1001};
    if (value > 1000.0) badValue(what, text, "a ratio N/D");
    const int num = static_cast<int>(std::lround(value * 1000.0));
    const int common = std::gcd(num, 1000);
    return {num / common, 1000 / common};
}

FrameRange frameRangeOption(std::string_view text, std::string_view what) {
    constexpr int kMax = 1000000;
    FrameRange range;
    std::string_view frames = text;
    const std::size_t colon = frames.find(':');
    if (colon != std::string_view::npos) {
        range.step = wholeOption(frames.substr(colon + 1), what, 1, kMax);
        frames = frames.substr(0, colon);
    }
    const std::size_t dash = frames.find('-', 1);
    range.first = wholeOption(frames.substr(0, dash), what, -kMax, kMax);
    range.last = dash == std::string_view::npos
                     ? range.first
                     : wholeOption(frames.substr(dash + 1), what, range.first, kMax);
    return range;
}

}  // namespace orvin::apps
