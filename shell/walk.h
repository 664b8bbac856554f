#pragma once

#include "platform/shell_tree.h"
#include "shell/line.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Where a typed line leads in the tree, and what may follow there.

namespace shell {

struct Position {
    const TreeNode* node;
    std::size_t taken; // words; the next one is wrong when there is one
};

// Follows the words from the root. What stands behind "help" starts there again.
Position Follow(const TreeNode& root, const ShellWords& words);

// Whether the word is the shell's own "help", or short for it.
bool IsHelp(const TreeNode& root, const std::string& word);

// What may be typed in a place.
struct Offer {
    std::string label; // the word, or the name of a value
    std::string help;
    ShellWords words; // that a value has to offer, or its form
};

// The offers for the last word of a line, which may be begun: behind a blank it is "". The end of the line is
// one where it may end. Values look at the running system.
std::vector<Offer> ListOffersAt(const TreeNode& root, std::string_view line);
// The offers' lines for the terminal, "" for none.
std::string FormatOffers(const std::vector<Offer>& offers);

// Words that may take the place of the last word of a line.
struct Completion {
    std::size_t begin = 0; // where that word begins in the line, in bytes
    ShellWords words;      // as they are typed, without repetition
};
Completion Complete(const TreeNode& root, std::string_view line);

// Why the line can't be run: the line, a mark below its wrong word, and what is accepted there.
std::string DescribeFault(std::string_view line, const Line& words, const Position& position);

} // namespace shell
