#pragma once

#include <cstddef>
#include <string>

// How texts of the shell fit the terminal.

namespace shell {

// How many columns a line may take. Without a terminal nothing limits it, so that what reads the output
// finds each text in one line.
std::size_t LineWidth();

// The text in lines of that width where it stands behind `indent` columns, and its further lines below it.
std::string WrapBehind(std::size_t indent, const std::string& text);

} // namespace shell
