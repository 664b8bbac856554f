#pragma once

#include <cstdarg>
#include <string>
#include <string_view>
#include <vector>

namespace linux_platform {

// The finished text of a printf-style call. errno is as before, so that %m tells the caller's error.
[[gnu::format(printf, 1, 0)]] std::string FormatText(const char* format, std::va_list arguments);

// The lines of a text without their newlines; a last line needs none.
std::vector<std::string> SplitLines(std::string_view text);

// Control characters, but those `allowed`, as "#" and three octal digits a byte, so that a text can neither
// begin a line of its own nor command the terminal of whoever reads it.
std::string Harmless(std::string_view text, std::string_view allowed);

// The text without white space at its ends.
std::string_view Trim(std::string_view text);

} // namespace linux_platform
