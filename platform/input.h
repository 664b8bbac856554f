#pragma once

#include <cstddef>
#include <string>

// Standard input where it is no terminal: the lines of a script, and the answers to the questions of its
// commands. What stands behind a line that was read stays for the next reader, whoever that is.

namespace script_input {

constexpr std::size_t kLineLimit = 8192; // bytes

enum class Reading { kLine, kEnd, kFailed };

// Reads the next line, without its newline. kFailed, told on the terminal, when the input can't be read, or
// has a longer line than that: it is no script then, and nothing behind it is read.
[[nodiscard]] Reading ReadLine(std::string& line);

// Lets the line that was read last be read again.
void PutBack(const std::string& line);

// The number of the line that was read last, 0 before the first one.
std::size_t LineNumber();

} // namespace script_input
