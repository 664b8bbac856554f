#include "platform/shell_tree.h"

#include "platform/messages.h"

#include <algorithm>
#include <iterator>
#include <utility>

TreeNode::~TreeNode() = default;

TreeNode& TreeNode::add(std::unique_ptr<TreeNode> stage) {
    return *stages_.emplace_back(std::move(stage));
}

void TreeNode::set_help(std::string label, std::string text) {
    label_ = std::move(label);
    help_ = std::move(text);
}

void TreeNode::clean() {
    std::move(stages_.begin(), stages_.end(), std::back_inserter(cleaned_));
    stages_.clear();
    action_ = nullptr;
    growth_ = nullptr;
}

// A node that grows is the same node: nobody can tell when it was done.
void TreeNode::grow() const {
    if (const auto growth = std::exchange(growth_, nullptr))
        growth(const_cast<TreeNode&>(*this));
}

const std::vector<std::unique_ptr<TreeNode>>& TreeNode::stages() const {
    grow();
    return stages_;
}

bool TreeNode::ends_command() const {
    grow();
    return static_cast<bool>(action_);
}

Shell& Shell::Get() {
    static Shell shell;
    return shell;
}

void Shell::SetTree(TreeNode* root, Build build) {
    root_ = root;
    build_ = std::move(build);
}

void Shell::RebuildTree() {
    if (root_ == nullptr)
        return;
    root_->clean();
    build_(*root_, mode_);
}

// A stage that has the whole word goes before those that it only begins; of these there must be one. Values
// are not abbreviated, and an empty word, as of a script's unset variable, is short for nothing.
TreeNode* TreeNode::find_stage(const std::string& word) const {
    TreeNode* begun = nullptr;
    std::size_t candidates = 0;
    for (const auto& stage : stages()) {
        if (stage->match(word))
            return stage.get();
        const bool is_value = dynamic_cast<const detail::list_completion_node*>(stage.get()) != nullptr;
        if (!is_value && !word.empty() && stage->partial_match(word)) {
            begun = stage.get();
            ++candidates;
        }
    }
    return candidates == 1 ? begun : nullptr;
}

bool TreeNode::parse_tokens(const ShellWords& words, std::size_t next, ShellArguments& arguments) {
    if (next >= words.size()) {
        if (ends_command())
            return action_(arguments);
        return Refuse("incomplete command");
    }
    if (TreeNode* const stage = find_stage(words[next]))
        return stage->execute(words[next], arguments, words, next + 1);
    return Refuse("unknown or ambiguous: %s", words[next]);
}

bool Node::execute(const std::string&, ShellArguments& arguments, const ShellWords& words, std::size_t next) {
    const bool done = parse_tokens(words, next, arguments);
    warning();
    return done;
}

bool detail::list_completion_node::partial_match(const std::string& word) const {
    const ShellWords offered = list();
    return std::any_of(offered.begin(), offered.end(),
                       [&](const std::string& candidate) { return candidate.starts_with(word); });
}
