#pragma once

#include "platform/shell_tree.h"
#include "shell/families.h"

// The tree that lines are typed at.

namespace shell {

// Makes the commands of a mode (0 single, 1 cluster) below an empty root.
void BuildTree(TreeNode& root, int mode);

// Whether the command makes sense in the mode.
bool IsInMode(const Command& command, int mode);

} // namespace shell
