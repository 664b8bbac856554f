#pragma once

#include <cstddef>
#include <string>

// The administrator's terminal. Every text is printf-style; a newline is added unless the text ends with one.

[[gnu::format(printf, 1, 2)]] void shell_print_error(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void shell_print_warning(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void shell_print_info(const char* format, ...);

// Asks a yes-or-no question. Zero means no.
[[gnu::format(printf, 1, 2)]] int shell_get_user_confirmation(const char* format, ...);

namespace corvanshell {

// The text with newlines in the place of blanks, so that no line is longer than `width`, apart from one that
// is a single word.
std::string WrapStr(const std::string& text, std::size_t width = 79);

} // namespace corvanshell
