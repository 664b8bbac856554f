#include "terminal_wait.h"
#include "text.h"

#include "platform/console.h"
#include "platform/input.h"
#include "platform/messages.h"

#include <cstdio>
#include <iostream>
#include <strings.h>
#include <unistd.h>
#include <utility>

namespace {

bool all_confirmed = false;
std::function<void()> before_question;
std::function<bool()> behind_answer;

void Show(const std::string& text) {
    std::cout.flush();
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

bool IsOneOf(const std::string& answer, const char* letter, const char* word) {
    return ::strcasecmp(answer.c_str(), letter) == 0 || ::strcasecmp(answer.c_str(), word) == 0;
}

// Byte by byte: the line editor, or another question, reads what is typed or pasted behind the line.
bool ReadTyped(linux_platform::TerminalWait& terminal, std::string& line) {
    for (char byte = 0; terminal.WaitForByte() && ::read(STDIN_FILENO, &byte, 1) == 1;) {
        // The line editor may have been at the terminal when it came.
        if (byte == '\n' || byte == '\r')
            return true;
        if (line.size() < script_input::kLineLimit)
            line += byte;
    }
    return false;
}

// False when there is no further line, or an interrupt came before it.
bool AskAtTerminal(const std::string& question, bool is_secret, std::string& answer) {
    linux_platform::TerminalWait terminal(is_secret);
    Show(question);
    std::string line;
    const bool is_read = ReadTyped(terminal, line);
    if (is_secret)
        Show("\n"); // the one that was not shown
    if (is_read)
        answer = linux_platform::Trim(line);
    return is_read;
}

bool AskInScript(const std::string& question, std::string& answer) {
    Show(question);
    std::string line;
    if (script_input::ReadLine(line) != script_input::Reading::kLine)
        return false;
    answer = linux_platform::Trim(line);
    return true;
}

bool Ask(const std::string& question, bool is_secret, std::string& answer) {
    if (before_question)
        before_question();
    const bool is_answered = ::isatty(STDIN_FILENO) != 0 ? AskAtTerminal(question, is_secret, answer)
                                                         : AskInScript(question, answer);
    return (!behind_answer || behind_answer()) && is_answered;
}

// In a script a line that answers nothing is the next command.
bool IsYes(const std::string& answer) {
    if (IsOneOf(answer, "y", "yes"))
        return true;
    if (::isatty(STDIN_FILENO) == 0 && !IsOneOf(answer, "n", "no")) {
        Show("\n");
        PrintError("line %zu does not answer the question, which counts as no", script_input::LineNumber());
        script_input::PutBack(answer);
    }
    return false;
}

} // namespace

int shell_get_user_confirmation(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string question = linux_platform::FormatText(format, arguments) + " [y/N] ";
    va_end(arguments);
    if (all_confirmed) {
        Show(question + "yes\n");
        return 1;
    }
    std::string answer;
    return Ask(question, false, answer) && IsYes(answer);
}

void shell_assume_confirmation() {
    all_confirmed = true;
}

bool shell_get_user_response(const char* question, bool secret, std::string& response) {
    return Ask(std::string(question) + " ", secret, response);
}

void shell_frame_questions(std::function<void()> before, std::function<bool()> behind) {
    before_question = std::move(before);
    behind_answer = std::move(behind);
}
