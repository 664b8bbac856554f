#include "shell/tree.h"

#include "shell/branches.h"
#include "shell/call.h"
#include "shell/slots.h"

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

// Puts the values of the typed line in the order of the pattern, and runs the command.
TreeNode::Action MakeAction(const Command& command, const Form& form) {
    return [&command, form](const ShellArguments& arguments) {
        Values words;
        auto typed = arguments.begin();
        for (const Token& token : form)
            words.push_back(token.is_value ? boost::any_cast<std::string>(*typed++) : token.text);
        return Run(MakeCall(command, form, words));
    };
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
                node.set_help(next.token.text, next.WordHelp());
            if (next.end != nullptr)
                node.set_action(MakeAction(*next.end, next.form));
            Grow(node, next);
        }
    }
}

using Rows = std::vector<const Command*>;

// The rows of the lines that begin with the same words.
struct Trunk {
    std::string words;
    std::size_t depth; // how many words
    Rows rows;

    bool IsAll(const Command& row) const { return row.pattern == words; }

    // The row of the words alone that has an action, null when there is none.
    const Command* End() const {
        const auto end = std::find_if(rows.begin(), rows.end(), [this](const Command* row) {
            return row->run != nullptr && IsAll(*row);
        });
        return end != rows.end() ? *end : nullptr;
    }

    // That of the heading, otherwise of the words alone, otherwise of the only command.
    const char* Help() const {
        for (const Command* const row : rows) {
            if (row->run == nullptr && IsAll(*row))
                return row->help;
        }
        if (const Command* const end = End())
            return end->help;
        const auto is_command = [](const Command* row) { return row->run != nullptr; };
        return std::count_if(rows.begin(), rows.end(), is_command) == 1
                   ? (*std::find_if(rows.begin(), rows.end(), is_command))->help
                   : "";
    }
};

// What stands behind the words in the pattern up to the next blank, "" at its end.
std::string_view NextToken(const Command& row, const std::string& words) {
    std::string_view rest = row.pattern;
    rest.remove_prefix(std::min(words.empty() ? 0 : words.size() + 1, rest.size()));
    return rest.substr(0, rest.find(' '));
}

// Sorts rows by the word behind those that they begin with. Words that lead to no command are left out.
std::vector<Trunk> SortByNextWord(const Trunk& parent) {
    std::vector<Trunk> trunks;
    for (const Command* const row : parent.rows) {
        const std::string_view next = NextToken(*row, parent.words);
        if (next.empty())
            continue;
        const std::string words = parent.words + (parent.words.empty() ? "" : " ") + std::string(next);
        auto trunk = std::find_if(trunks.begin(), trunks.end(),
                                  [&](const Trunk& known) { return known.words == words; });
        if (trunk == trunks.end())
            trunk = trunks.insert(trunk, {words, parent.depth + 1, {}});
        trunk->rows.push_back(row);
    }
    std::erase_if(trunks, [](const Trunk& trunk) {
        return std::none_of(trunk.rows.begin(), trunk.rows.end(),
                            [](const Command* row) { return row->run != nullptr; });
    });
    return trunks;
}

void GrowTrunk(TreeNode& node, const Trunk& trunk);

// A word's own stages are made when it is typed: most lines need few of the rows.
void AddTrunks(TreeNode& node, const Trunk& parent) {
    for (Trunk& trunk : SortByNextWord(parent)) {
        const std::string word = trunk.words.substr(parent.words.empty() ? 0 : parent.words.size() + 1);
        TreeNode& stage = node.add(std::make_unique<WordNode>(word));
        stage.set_help(word, trunk.Help());
        stage.set_growth([trunk = std::move(trunk)](TreeNode& grown) { GrowTrunk(grown, trunk); });
    }
}

void GrowTrunk(TreeNode& node, const Trunk& trunk) {
    const bool goes_on_with_words =
        std::all_of(trunk.rows.begin(), trunk.rows.end(), [&](const Command* row) {
            const std::string_view next = NextToken(*row, trunk.words);
            return !next.starts_with('<') && !next.starts_with('[');
        });
    if (goes_on_with_words) {
        if (const Command* const end = trunk.End())
            node.set_action(MakeAction(*end, Expand(end->pattern).front()));
        AddTrunks(node, trunk);
        return;
    }
    const Branch root = PlantRows(trunk.rows);
    const Branch* branch = &root;
    for (std::size_t word = 0; word < trunk.depth; ++word)
        branch = &branch->branches.front();
    if (branch->end != nullptr)
        node.set_action(MakeAction(*branch->end, branch->form));
    Grow(node, *branch);
}

} // namespace

bool IsInMode(const Command& command, int mode) {
    return !(command.traits & (mode == 0 ? kInCluster : kInSingle));
}

void BuildTree(TreeNode& root, int mode) {
    Trunk all{"", 0, {}};
    for (const Family& family : Families()) {
        for (const Command& row : family.commands) {
            if (IsInMode(row, mode))
                all.rows.push_back(&row);
        }
    }
    AddTrunks(root, all);
}

} // namespace shell
