#pragma once

#include "shell/command.h"
#include "shell/pattern.h"

#include <vector>

namespace shell {

// A place of the tree before its nodes are made: the commands that pass through it, and the one that ends
// there.
struct Branch {
    Token token;
    std::vector<Branch> branches;
    const Command* end = nullptr;
    Form form; // of the command that ends here
    const char* heading = nullptr;
    bool is_within = false; // a word behind a value, or one of a choice
    std::vector<const Command*> through;

    // The help of a word that is typed here.
    const char* WordHelp() const;
};

// The tree of the rows, headings among them, below an empty root.
Branch PlantRows(const std::vector<const Command*>& rows);

} // namespace shell
