#pragma once

#include "platform/shell_tree.h"

#include <memory>
#include <string>

namespace shell {

// The stage of a pattern's value, with its help: "<interface>" and the like, or a range "<1..120>". A
// value that nobody knows ends the program: a table is wrong.
std::unique_ptr<TreeNode> MakeStage(const std::string& value);

} // namespace shell
