#include "reference/shell/tree.h"

#include "reference/shell/change_lock.h"
#include "reference/shell/keywords.h"
#include "reference/shell/pattern.h"
#include "reference/shell/slots.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace shell {
namespace {

// A word that is typed as it stands.
class WordNode : public Node {
public:
    explicit WordNode(std::string word) : word_(std::move(word)) {}

    ShellWords sample_inputs() const override { return {word_}; }
    ShellWords completion() const override { return {word_}; }
    bool partial_match(const std::string& word) const override { return word_.starts_with(word); }
    bool match(const std::string& word) const override { return word == word_; }

private:
    std::string word_;
};

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

    Branch& Below(const Token& next) {
        const auto known = std::find_if(branches.begin(), branches.end(),
                                        [&](const Branch& branch) { return branch.token.text == next.text; });
        if (known != branches.end())
            return *known;
        branches.emplace_back().token = next;
        return branches.back();
    }
};

void Plant(Branch& root, const Command& command, const Form& form) {
    Branch* branch = &root;
    bool is_behind_value = false;
    for (const Token& token : form) {
        branch = &branch->Below(token);
        branch->is_within = is_behind_value || token.place >= 0;
        is_behind_value = is_behind_value || token.is_value;
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
            const auto next =
                std::find_if(branch->branches.begin(), branch->branches.end(),
                             [&](const Branch& known) { return known.token.text == token.text; });
            if (next == branch->branches.end())
                return;
            branch = &*next;
        }
        if (branch->heading == nullptr)
            branch->heading = heading.help;
    }
}

// Puts the values of the typed line in the order of the pattern, and runs the command.
TreeNode::Action MakeAction(const Command& command, const Form& form) {
    return [&command, form](const ShellArguments& arguments) {
        Values values(Command::CountValues(command.pattern));
        auto typed = arguments.begin();
        for (const Token& token : form) {
            const std::string text = token.is_value ? boost::any_cast<std::string>(*typed++) : token.text;
            if (token.place < 0)
                continue;
            std::string& value = values[static_cast<std::size_t>(token.place)];
            value += (value.empty() ? "" : " ") + text;
        }
        if (command.traits & kShows)
            return command.run(values);
        ChangeLock lock;
        return lock.Acquire() && command.run(values);
    };
}

// A heading goes first. A word within a line says what follows it, or which choice it is; any other is a part
// of one command, or ends it.
const char* WordHelp(const Branch& branch) {
    if (branch.heading != nullptr)
        return branch.heading;
    const char* const keyword = branch.is_within ? KeywordHelp(branch.token.text) : "";
    if (*keyword != '\0')
        return keyword;
    if (branch.end != nullptr)
        return branch.end->help;
    return branch.through.size() == 1 ? branch.through[0]->help : "";
}

void Grow(TreeNode& parent, const Branch& branch) {
    // A word goes before a value that could be the same text.
    for (const bool is_value : {false, true}) {
        for (const Branch& next : branch.branches) {
            if (next.token.is_value != is_value)
                continue;
            TreeNode& node = parent.add(is_value ? MakeStage(next.token.text)
                                                 : std::make_unique<WordNode>(next.token.text));
            if (!is_value)
                node.set_help(next.token.text, WordHelp(next));
            if (next.end != nullptr)
                node.set_action(MakeAction(*next.end, next.form));
            Grow(node, next);
        }
    }
}

// The rows of the lines that begin with one word.
struct Trunk {
    std::string word;
    std::vector<const Command*> rows;

    // That of the row that is the word alone, otherwise of the only one.
    const char* Help() const {
        for (const Command* const row : rows) {
            if (row->pattern == word)
                return row->help;
        }
        return rows.size() == 1 ? rows[0]->help : "";
    }
};

std::vector<Trunk> SortByFirstWord(int mode) {
    std::vector<Trunk> trunks;
    for (const Family& family : Families()) {
        for (const Command& row : family.commands) {
            if (!IsInMode(row, mode))
                continue;
            const std::string_view pattern = row.pattern;
            const std::string_view word = pattern.substr(0, pattern.find(' '));
            auto trunk = std::find_if(trunks.begin(), trunks.end(),
                                      [&](const Trunk& known) { return known.word == word; });
            if (trunk == trunks.end())
                trunk = trunks.insert(trunk, {std::string(word), {}});
            trunk->rows.push_back(&row);
        }
    }
    return trunks;
}

void GrowTrunk(TreeNode& node, const Trunk& trunk) {
    Branch top;
    for (const Command* const row : trunk.rows) {
        if (row->run == nullptr)
            continue;
        for (const Form& form : Expand(row->pattern))
            Plant(top, *row, form);
    }
    for (const Command* const row : trunk.rows) {
        if (row->run == nullptr)
            PlaceHeading(top, *row);
    }
    const Branch& branch = top.branches.front();
    if (branch.end != nullptr)
        node.set_action(MakeAction(*branch.end, branch.form));
    Grow(node, branch);
}

} // namespace

bool IsInMode(const Command& command, int mode) {
    return !(command.traits & (mode == 0 ? kInCluster : kInSingle));
}

void BuildTree(TreeNode& root, int mode) {
    for (Trunk& trunk : SortByFirstWord(mode)) {
        TreeNode& node = root.add(std::make_unique<WordNode>(trunk.word));
        node.set_help(trunk.word, trunk.Help());
        node.set_growth([trunk = std::move(trunk)](TreeNode& grown) { GrowTrunk(grown, trunk); });
    }
}

} // namespace shell
