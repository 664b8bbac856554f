#pragma once

#include "platform/shell_tree.h"

#include <string>

namespace shell {

// The tree of the present mode, and the lines that are run in it.
class Session {
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Runs one line. True when its action was, and for a line without words; any other is told on the
    // terminal.
    [[nodiscard]] bool Run(const std::string& line);

    const TreeNode& Root() const { return root_; }
    // The host's name and the mode, which another shell may have switched.
    std::string Prompt();

private:
    void FollowMode();

    Node root_;
};

// The command `exit`: no further line is read.
bool EndSession();
bool IsSessionOver();

} // namespace shell
