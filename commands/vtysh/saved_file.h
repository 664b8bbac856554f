#pragma once

#include "commands/vtysh/daemon.h"

#include <functional>
#include <string>

// The files in which the routing daemons save their configuration: lines, and blocks of a header, item lines
// that begin with a blank, and a line "!".

namespace vtysh {

// Whether a file that can't be opened or read is told on the terminal.
enum class Failure { kTold, kSilent };

// Hands each line to `take`, without its newline, until that gives false. What goes beyond 8191 bytes of a
// line is left out. False when the file can't be opened or read.
[[nodiscard]] bool ReadSaved(const Daemon& daemon, const std::function<bool(const std::string&)>& take,
                             Failure failure = Failure::kTold);

// The lines of the first block that `is_header` takes. False when there is none.
[[nodiscard]] bool ReadBlock(const Daemon& daemon, const std::function<bool(const std::string&)>& is_header,
                             Lines& block, Failure failure = Failure::kTold);

// Whether the words of `part` stand in the line: what is in front of them and behind them is a blank or
// nothing.
bool HoldsWords(const std::string& line, const std::string& part);

} // namespace vtysh
