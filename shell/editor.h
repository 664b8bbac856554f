#pragma once

#include "platform/shell_tree.h"
#include "shell/history.h"

#include <memory>
#include <string>

struct editline;
struct history;

namespace shell {

// Reads lines at a terminal: history, Tab to complete words, "?" to show what may follow, Ctrl-C to abandon a
// line.
class Editor {
public:
    // The tree is looked at as it is when a key is pressed.
    explicit Editor(const TreeNode& root);
    ~Editor();
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;

    // False at the end of the input.
    [[nodiscard]] bool Read(const std::string& prompt, std::string& line);

    const TreeNode& Root() const { return root_; }
    const char* Prompt() const { return prompt_.c_str(); }

private:
    const char* ReadHeld(int* count);
    void Remember(const std::string& line);

    const TreeNode& root_;
    std::string prompt_;
    HistoryFile file_;
    std::unique_ptr<history, void (*)(history*)> history_;
    std::unique_ptr<editline, void (*)(editline*)> line_;
};

} // namespace shell
