#include "toolkit/Questions.h"

#include <atomic>
#include <cstdio>
#include <string>

namespace orvin {

namespace {

std::atomic<Questions*>& current() {
    static std::atomic<Questions*> answerer = nullptr;
    return answerer;
}

// Lines of a message end in CR, which on a terminal would write one over the other; and bytes of a
// broken file that it quotes must not command the terminal.
void say(std::string_view text) {
    std::string lines(text);
    for (char& c : lines) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\r') c = '\n';
        if ((byte < 0x20 && c != '\n' && c != '\t') || byte == 0x7f) c = '?';
    }
    lines.resize(lines.find_last_not_of('\n') + 1);
    std::fprintf(stderr, "%s\n", lines.c_str());
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
