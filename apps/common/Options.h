// Command lines of the programs: commands with options, complete help, one usage line on errors.
//
// A program has commands ("orvinhost render ..."); each has positional arguments and options.
// Options are written "--name VALUE" or "--name=VALUE"; "--" ends them. Exit statuses are 0 (done),
// 1 (failed) and 2 (usage).
#pragma once

#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvin::apps {

inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

/// The command line can't be understood: status 2, with the usage line.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The work failed: status 1, the text on standard error.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct OptionSpec {
    std::string name;   // with its dashes: "--size", or "-o"
    std::string value;  // name of its value in the help; empty: a switch
    std::string help;
};

/// "--verbose", which every command takes: what the kernels and the effect print to standard output
/// is shown, on standard error.
OptionSpec verboseOption();

struct CommandSpec {
    std::string name;
    std::string arguments;  // as in the usage line: "PROJECT.twp --out PATTERN"
    int minPositional = 0;
    int maxPositional = 0;
    std::string summary;
    std::vector<OptionSpec> options;
    std::vector<std::string> examples;
};

/// What a command line said.
class ParsedOptions {
  public:
    bool has(std::string_view name) const { return values_.find(name) != values_.end(); }
    /// The last value given, or `fallback`.
    std::string value(std::string_view name, std::string_view fallback = {}) const;
    /// All values of an option that may be repeated.
    std::vector<std::string> all(std::string_view name) const;
    const std::vector<std::string>& positional() const { return positional_; }

  private:
    friend ParsedOptions parseOptions(const CommandSpec&, std::span<const std::string>);
    std::map<std::string, std::vector<std::string>, std::less<>> values_;
    std::vector<std::string> positional_;
};

/// Throws UsageError on an unknown option, a missing value, or too few or many positionals.
ParsedOptions parseOptions(const CommandSpec& command, std::span<const std::string> arguments);

/// "usage: PROGRAM COMMAND ARGUMENTS [options]".
std::string usageLine(std::string_view program, const CommandSpec& command);
/// All of a command: usage, options, examples.
std::string commandHelp(std::string_view program, const CommandSpec& command);
/// All commands with their summaries, and the exit statuses.
std::string programHelp(std::string_view program, std::string_view purpose,
                        std::span<const CommandSpec> commands);

/// The name of a picture to write. Pictures are PNG whatever their name, so it must end in ".png".
std::string pngOption(std::string_view text, std::string_view what);

/// Readers of option values. `what` names the option in the UsageError.
int wholeOption(std::string_view text, std::string_view what, int min, int max);
double realOption(std::string_view text, std::string_view what, double min, double max);

struct Size {
    int width = 0;
    int height = 0;
};
/// "1920x1080"; each side 1 to 30000.
Size sizeOption(std::string_view text, std::string_view what);

struct Ratio {
    int num = 1;
    int den = 1;
};
/// "N/D", "N" or a decimal ("29.97" and "23.976" become the NTSC fractions); above 0.
Ratio ratioOption(std::string_view text, std::string_view what);

struct FrameRange {
    int first = 0;
    int last = 0;
    int step = 1;
};
/// "A", "A-B" or "A-B:STEP"; A may be negative, B >= A, STEP >= 1.
FrameRange frameRangeOption(std::string_view text, std::string_view what);

}  // namespace orvin::apps
