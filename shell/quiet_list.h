#pragma once

#include "platform/shell_tree.h"

#include <functional>

namespace shell {

// The words that the call lists, read while somebody types: in a process of its own, which says nothing, and
// for a moment only. It waits for no lock: settings that are locked have no words. None when it takes longer.
ShellWords ListQuietly(const std::function<ShellWords()>& list);

} // namespace shell
