#pragma once

#include "shell/command.h"

namespace shell {

// Shows the commands of the present mode whose lines begin so, "" being any word, with their explanations,
// page by page. False, told on the terminal, when there is none.
[[nodiscard]] bool ShowHelp(const Values& words);

} // namespace shell
