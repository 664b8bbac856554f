#include "shell/branches.h"

#include "shell/keywords.h"

#include <algorithm>

namespace shell {
namespace {

// Where the token leads from the branch; the end when there is no such way yet.
std::vector<Branch>::iterator FindBelow(Branch& branch, const Token& token) {
    return std::find_if(branch.branches.begin(), branch.branches.end(),
                        [&](const Branch& known) { return known.token.text == token.text; });
}

Branch& Below(Branch& branch, const Token& token) {
    const auto known = FindBelow(branch, token);
    if (known != branch.branches.end())
        return *known;
    branch.branches.emplace_back().token = token;
    return branch.branches.back();
}

void Plant(Branch& root, const Command& command, const Form& form) {
    Branch* branch = &root;
    bool is_behind_value = false;
    for (const Token& token : form) {
        branch = &Below(*branch, token);
        branch->is_within = is_behind_value || token.place >= 0;
        is_behind_value = is_behind_value || token.is_value || token.place >= 0;
        if (std::find(branch->through.begin(), branch->through.end(), &command) == branch->through.end())
            branch->through.push_back(&command);
    }
    // The first row of a line has it.
    if (branch->end == nullptr) {
        branch->end = &command;
        branch->form = form;
    }
}

// The first row of a place heads it. Where no command of this mode passes, it says nothing.
void PlaceHeading(Branch& root, const Command& heading) {
    for (const Form& form : Expand(heading.pattern)) {
        Branch* branch = &root;
        for (const Token& token : form) {
            const auto next = FindBelow(*branch, token);
            if (next == branch->branches.end())
                return;
            branch = &*next;
        }
        if (branch->heading == nullptr)
            branch->heading = heading.help;
    }
}

} // namespace

// A heading goes first. A word within a line says what follows it, or which choice it is; any other is a part
// of one command, or ends it.
const char* Branch::WordHelp() const {
    if (heading != nullptr)
        return heading;
    const char* const keyword = is_within ? KeywordHelp(token.text) : "";
    if (*keyword != '\0')
        return keyword;
    if (end != nullptr)
        return end->help;
    return through.size() == 1 ? through[0]->help : "";
}

Branch PlantRows(const std::vector<const Command*>& rows) {
    Branch root;
    for (const Command* const row : rows) {
        if (row->run == nullptr)
            continue;
        for (const Form& form : Expand(row->pattern))
            Plant(root, *row, form);
    }
    for (const Command* const row : rows) {
        if (row->run == nullptr)
            PlaceHeading(root, *row);
    }
    return root;
}

} // namespace shell
