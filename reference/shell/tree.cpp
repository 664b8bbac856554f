#include "reference/shell/tree.h"

#include "reference/shell/branches.h"
#include "reference/shell/change_lock.h"
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
    const Branch top = PlantRows(trunk.rows);
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
