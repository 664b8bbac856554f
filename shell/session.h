#pragma once

#include "platform/shell_tree.h"

#include <cstddef>
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
    // terminal. The line of a script has a number, from 1, which stands in front of what is told.
    [[nodiscard]] bool Run(const std::string& line, std::size_t number = 0);

    const TreeNode& Root() const { return root_; }
    // The host's name and the mode, which another shell may have switched.
    std::string Prompt();

private:
    void FollowMode();
    bool RunLine(const std::string& line, bool is_in_script);

    Node root_;
};

// The command `exit`: no further line is read.
bool EndSession();
bool IsSessionOver();

} // namespace shell
