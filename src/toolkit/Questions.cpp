#include "toolkit/Questions.h"

#include <atomic>
#include <cstdio>

namespace orvin {

namespace {

std::atomic<Questions*>& current() {
    static std::atomic<Questions*> answerer = nullptr;
    return answerer;
}

void say(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fputc('\n', stderr);
}

}  // namespace

int Questions::choose(std::string_view, std::span<const std::string_view>, int unattended) {
    return unattended;
}

void HeadlessQuestions::showMessage(std::string_view text, bool) {
    say(text);
}

int HeadlessQuestions::ask(std::string_view text, std::string_view first, std::string_view second,
                           std::string_view third) {
    say(text);
    return !third.empty() ? 2 : !second.empty() ? 1 : first.empty() ? -1 : 0;
}

std::optional<std::filesystem::path> HeadlessQuestions::openFile(std::string_view title,
                                                                 std::string_view) {
    say(title);
    return std::nullopt;
}

std::optional<std::filesystem::path> HeadlessQuestions::saveFile(std::string_view title,
                                                                 std::string_view) {
    say(title);
    return std::nullopt;
}

Questions& questions() {
    static HeadlessQuestions headless;
    Questions* answerer = current();
    return answerer ? *answerer : headless;
}

Questions* setQuestions(Questions* answerer) {
    return current().exchange(answerer);
}

}  // namespace orvin
