#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// How texts of the shell fit the terminal.

namespace shell {

// How many columns a line may take. Without a terminal nothing limits it, so that what reads the output
// finds each text in one line.
std::size_t LineWidth();

// The text in lines of that width where it stands behind `indent` columns, and its further lines below it.
std::string WrapBehind(std::size_t indent, const std::string& text);

// The text for the terminal: a control character, which could steer it, is a "?". So is a byte that is no
// part of a character.
std::string Printable(std::string_view text);

} // namespace shell
