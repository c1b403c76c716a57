// A user for tests: answers the startup dialog and remembers what was shown.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "toolkit/Questions.h"

namespace orvin {

class ScriptedUser final : public Questions {
  public:
    ScriptedUser() : before_(setQuestions(this)) {}
    ~ScriptedUser() override { setQuestions(before_); }
    ScriptedUser(const ScriptedUser&) = delete;
    ScriptedUser& operator=(const ScriptedUser&) = delete;

    int button = 0;                             // of the startup dialog
    std::function<void()> whileAsked;           // what else happens while it is open
    std::vector<std::string> buttons;           // that it had
    std::vector<std::string> messages;          // "fatal: " in front of fatal ones
    std::vector<std::string> questionsAsked;    // titles of file dialogs
    std::optional<std::filesystem::path> file;  // for all of them

    void showMessage(std::string_view text, bool fatal) override {
        messages.push_back((fatal ? "fatal: " : "") + std::string(text));
    }
    int ask(std::string_view, std::string_view, std::string_view, std::string_view) override {
        return 0;
    }
    int choose(std::string_view, std::span<const std::string_view> choices, int) override {
        buttons.assign(choices.begin(), choices.end());
        if (whileAsked) whileAsked();
        return button;
    }
    std::optional<std::filesystem::path> openFile(std::string_view title,
                                                  std::string_view) override {
        questionsAsked.emplace_back(title);
        return file;
    }
    std::optional<std::filesystem::path> saveFile(std::string_view title,
                                                  std::string_view) override {
        questionsAsked.emplace_back(title);
        return file;
    }

  private:
    Questions* before_;
};

}  // namespace orvin
