#pragma once

#include <cstddef>
#include <string>

// The administrator's terminal. Every text is printf-style; a newline is added unless the text ends with one.

[[gnu::format(printf, 1, 2)]] void shell_print_error(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void shell_print_warning(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void shell_print_info(const char* format, ...);

// Asks a yes-or-no question. Zero means no.
[[gnu::format(printf, 1, 2)]] int shell_get_user_confirmation(const char* format, ...);
// From here on every such question is answered with yes, and shown with its answer.
void shell_assume_confirmation();

// Asks for a text. What is typed at a terminal for a secret is not shown. False when the input has ended.
[[nodiscard]] bool shell_get_user_response(const char* question, bool secret, std::string& response);

namespace corvanshell {

// The text with newlines in the place of blanks, so that no line is longer than `width`, apart from one that
// is a single word.
std::string WrapStr(const std::string& text, std::size_t width = 79);

} // namespace corvanshell
