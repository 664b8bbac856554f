#pragma once

#include "platform/console.h"

#include <boost/any.hpp>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// The tree of the command shell: a typed line walks from the root to the node that ends a command, and each
// value on its way joins the arguments of that command's action.

using ShellWords = std::vector<std::string>;
using ShellArguments = std::vector<boost::any>; // a std::string each, in the order of the line

class TreeNode {
public:
    using Action = std::function<bool(const ShellArguments&)>;

    virtual ~TreeNode();
    TreeNode() = default;
    TreeNode(const TreeNode&) = delete;
    TreeNode& operator=(const TreeNode&) = delete;

    // Carries out the words from `next` on: runs the action when none is left, otherwise hands on to the
    // stage that takes the word, one that matches it or the only one that it begins. False, told on the
    // terminal, when there is no such stage; otherwise what the action gave.
    [[nodiscard]] virtual bool parse_tokens(const ShellWords& words, std::size_t next,
                                            ShellArguments& arguments);
    // What help shows, and what may be completed, in the place of this node.
    virtual ShellWords sample_inputs() const = 0;
    virtual ShellWords completion() const = 0;
    // Whether the word may become one that this node takes; whether it is one.
    virtual bool partial_match(const std::string& word) const = 0;
    virtual bool match(const std::string& word) const = 0;
    // Takes one word and hands on to the next stage.
    [[nodiscard]] virtual bool execute(const std::string& word, ShellArguments& arguments,
                                       const ShellWords& words, std::size_t next) = 0;
    // Called behind a command that this node took part in.
    virtual void warning() const {}

    TreeNode& add(std::unique_ptr<TreeNode> stage);
    void set_action(Action action) { action_ = std::move(action); }
    // What help says of the node: what is typed in its place, and what that means.
    void set_help(std::string label, std::string text);
    const std::string& label() const { return label_; }
    const std::string& help() const { return help_; }
    // Empties the node. What stood below it lives on, because the command that empties the tree is a part of
    // it, until it is dropped between two commands.
    void clean();
    void drop_cleaned() { cleaned_.clear(); }
    // What gives the node its stages and its action when they are asked for first, so that a large tree costs
    // what is used of it.
    void set_growth(std::function<void(TreeNode& node)> growth) { growth_ = std::move(growth); }
    const std::vector<std::unique_ptr<TreeNode>>& stages() const;
    bool ends_command() const;
    // The stage that takes the word: one that matches it, or the only one that it begins. Null when there is
    // none.
    TreeNode* find_stage(const std::string& word) const;

private:
    void grow() const;

    std::vector<std::unique_ptr<TreeNode>> stages_;
    std::vector<std::unique_ptr<TreeNode>> cleaned_;
    Action action_;
    mutable std::function<void(TreeNode& node)> growth_;
    std::string label_;
    std::string help_;
};

// The running command shell, as far as its commands may change it. A process that runs commands without a
// shell has an object without a tree.
class Shell {
public:
    // Makes the commands of a mode below the root.
    using Build = std::function<void(TreeNode& root, int mode)>;

    static Shell& Get();

    // 0 single, 1 cluster. The shell sets it when it starts.
    int Mode() const { return mode_; }
    void SetMode(int mode) { mode_ = mode; }

    // The tree that commands are typed at. The caller owns the root, and takes it back with a null pointer.
    void SetTree(TreeNode* root, Build build);
    // Cleans the tree and builds it for the present mode.
    void RebuildTree();

private:
    int mode_ = 0;
    TreeNode* root_ = nullptr;
    Build build_;
};

// A stage that takes any word that is not empty, and adds nothing to the arguments.
class Node : public TreeNode {
public:
    ShellWords sample_inputs() const override { return {}; }
    ShellWords completion() const override { return {}; }
    bool partial_match(const std::string&) const override { return true; }
    bool match(const std::string& word) const override { return !word.empty(); }
    [[nodiscard]] bool execute(const std::string& word, ShellArguments& arguments, const ShellWords& words,
                               std::size_t next) override;
};

namespace value {

// One command argument of a type.
template <typename T>
class generic {
public:
    using type = std::remove_const_t<T>;

    virtual ~generic() = default;

    // Whether the word is such an argument; fills `parsed` when it is.
    [[nodiscard]] virtual bool parse(const std::string& word, type& parsed) const {
        parsed = word;
        return !word.empty();
    }
    // What help shows where a value is to be typed: a range, a form.
    virtual std::string sample() const { return {}; }
};

// An argument that offers words.
class list_completion {
public:
    virtual ~list_completion() = default;
    virtual ShellWords list() const = 0;
};

} // namespace value

namespace detail {

// A stage whose words are offered as a list.
class list_completion_node : public Node {
public:
    ShellWords sample_inputs() const override { return list(); }
    ShellWords completion() const override { return list(); }
    bool partial_match(const std::string& word) const override;

protected:
    virtual ShellWords list() const = 0;
};

template <class V, class Next>
class in_node;

// The stage of a value class, which joins the arguments. A value without a list has no words to offer.
template <class V>
class in_node<V, void> : public list_completion_node {
public:
    explicit in_node(V value = V()) : value_(std::move(value)) {}

    ShellWords sample_inputs() const override {
        if constexpr (is_listed)
            return list();
        return {value_.sample()};
    }
    bool match(const std::string& word) const override {
        std::string parsed;
        return value_.parse(word, parsed);
    }
    [[nodiscard]] bool execute(const std::string& word, ShellArguments& arguments, const ShellWords& words,
                               std::size_t next) override {
        std::string parsed;
        if (!value_.parse(word, parsed)) {
            shell_print_error("%s: bad value", word.c_str());
            return false;
        }
        arguments.emplace_back(parsed);
        const bool done = parse_tokens(words, next, arguments);
        warning();
        return done;
    }

protected:
    ShellWords list() const override {
        if constexpr (is_listed)
            return value_.list();
        return {};
    }

private:
    static constexpr bool is_listed = std::is_base_of_v<value::list_completion, V>;

    V value_;
};

} // namespace detail
