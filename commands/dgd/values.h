#pragma once

#include "platform/shell_tree.h"

// The arguments of the dead gateway detection's commands.

namespace value {

// Next hops, and rules, of the saved configuration.
class ExistingNextHops : public generic<const std::string>, public list_completion {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    ShellWords list() const override;
};

class ExistingDgdRules : public generic<const std::string>, public list_completion {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    ShellWords list() const override;
};

// Interfaces whose gateway a lease brings, and "modem".
class DGDInterface : public generic<const std::string>, public list_completion {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    ShellWords list() const override;
};

// Check types.
class DGDRequest : public generic<const std::string>, public list_completion {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    ShellWords list() const override;
};

// Names of next hops and rules, and log texts.
class DgdName : public generic<const std::string> {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    std::string sample() const override;
};

class DgdLogText : public generic<const std::string> {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    std::string sample() const override;
};

// Decimal numbers; the signed one takes a "-".
class DgdNumber : public generic<const std::string> {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
};

class DgdSignedNumber : public generic<const std::string> {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
};

} // namespace value

extern template class detail::in_node<value::DGDRequest, void>;
