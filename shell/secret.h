#pragma once

#include <string>

namespace shell {

// Asks for a password or a key of SNMPv3, which is never a word of a line: lines stand in the history and in
// the list of processes. At a terminal it is typed unseen, twice. False, told on the terminal, when it is
// none.
[[nodiscard]] bool AskSecret(const char* what, std::string& secret);

} // namespace shell
