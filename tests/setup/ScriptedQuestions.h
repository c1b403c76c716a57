// An answerer that keeps what it was told and answers as set up.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "toolkit/Questions.h"

namespace orvin {

class ScriptedQuestions final : public Questions {
  public:
    ScriptedQuestions() : before_(setQuestions(this)) {}
    ~ScriptedQuestions() override { setQuestions(before_); }

    void showMessage(std::string_view text, bool) override { messages.emplace_back(text); }
    int ask(std::string_view text, std::string_view, std::string_view, std::string_view) override {
        asked.emplace_back(text);
        return 2;
    }
    std::optional<std::filesystem::path> openFile(std::string_view title,
                                                  std::string_view) override {
        asked.emplace_back(title);
        return fileToOpen;
    }
    std::optional<std::filesystem::path> saveFile(std::string_view title,
                                                  std::string_view) override {
        asked.emplace_back(title);
        return fileToSave;
    }

    std::vector<std::string> messages;
    std::vector<std::string> asked;
    std::optional<std::filesystem::path> fileToOpen;
    std::optional<std::filesystem::path> fileToSave;

  private:
    Questions* before_;
};

}  // namespace orvin
