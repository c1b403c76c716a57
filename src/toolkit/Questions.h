// Everything that asks or tells the user goes through this interface: native dialogs on Windows,
// a scripted answerer in tests, standard error plus the cautious answer in headless programs.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvin {

class Questions {
  public:
    virtual ~Questions() = default;

    /// A message with a single button. `fatal` marks one after which the work can't go on.
    virtual void showMessage(std::string_view text, bool fatal) = 0;

    /// A choice among up to three buttons (last one cautious); returns the button's index.
    virtual int ask(std::string_view text, std::string_view first, std::string_view second,
                    std::string_view third) = 0;

    /// A choice among any number of buttons; returns the button's index. Where there is no user to
    /// ask, `unattended` is the answer that lets the work go on: this is what the base gives.
    virtual int choose(std::string_view title, std::span<const std::string_view> buttons,
                       int unattended);

    /// A file to open; nothing when the user cancels. `pattern` like "*.twp", several divided by
    /// ";".
    virtual std::optional<std::filesystem::path> openFile(std::string_view title,
                                                          std::string_view pattern) = 0;

    /// A file to write; nothing when the user cancels.
    virtual std::optional<std::filesystem::path> saveFile(std::string_view title,
                                                          std::string_view pattern) = 0;
};

/// Messages to standard error, the last (cautious) button, no file: the answerer of headless use.
class HeadlessQuestions : public Questions {
  public:
    void showMessage(std::string_view text, bool fatal) override;
    int ask(std::string_view text, std::string_view first, std::string_view second,
            std::string_view third) override;
    std::optional<std::filesystem::path> openFile(std::string_view title,
                                                  std::string_view pattern) override;
    std::optional<std::filesystem::path> saveFile(std::string_view title,
                                                  std::string_view pattern) override;
};

/// The answerer in use: never null, HeadlessQuestions until somebody sets another.
Questions& questions();

/// Puts `answerer` in use and returns the one before; null puts the headless one back.
Questions* setQuestions(Questions* answerer);

}  // namespace orvin
