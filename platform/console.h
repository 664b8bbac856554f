#pragma once

#include <cstddef>
#include <functional>
#include <string>

// The administrator's terminal. Every text is printf-style; a newline is added unless the text ends with one,
// and control characters that could command the terminal are shown by their numbers. A warning is marked as
// one where it goes to a terminal.

[[gnu::format(printf, 1, 2)]] void shell_print_error(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void shell_print_warning(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void shell_print_info(const char* format, ...);

// From here on this stands in front of each error: where a script stands.
void shell_prefix_errors(std::string prefix);

// Asks a yes-or-no question. Zero means no. Without a terminal the answer is the next line of standard input,
// when it is one: any other line is told, counts as no, and is there for the next reader.
[[gnu::format(printf, 1, 2)]] int shell_get_user_confirmation(const char* format, ...);
// From here on every such question is answered with yes, and shown with its answer.
void shell_assume_confirmation();

// Asks for a text. What is typed at a terminal for a secret is not shown. False when the input has ended.
[[nodiscard]] bool shell_get_user_response(const char* question, bool secret, std::string& response);

// What is done in front of each question, and behind its answer, which counts as none when that is false: it
// has said why.
void shell_frame_questions(std::function<void()> before, std::function<bool()> behind);

namespace corvanshell {

// The text with newlines in the place of blanks, so that no line is longer than `width`, apart from one that
// is a single word.
std::string WrapStr(const std::string& text, std::size_t width = 79);

} // namespace corvanshell
