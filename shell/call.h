#pragma once

#include "shell/command.h"
#include "shell/pattern.h"

#include <optional>

// A row with the values of a line.

namespace shell {

struct Call {
    const Command* command;
    Values values; // in the order of the pattern, an empty one for what was left out
};

// The call of a row by the words of one of its forms, values among them.
Call MakeCall(const Command& command, const Form& form, const Values& words);

// Runs the row's action, with the lock of changes when it changes anything and takes none itself.
[[nodiscard]] bool Run(const Call& call);

// The call of a line in which no word is short, in any mode and with any values, whatever the shell thinks of
// them: what an action refuses itself can be tried. Without a value when no row has such a line.
std::optional<Call> FindCall(const Values& words);

} // namespace shell
