#pragma once

#include "platform/shell_tree.h"

// The arguments of the policy commands that offer their values. On a passive node each offers one sentence
// that says why there are none.

namespace value {

// Policies of the saved configuration, without the daemon's own.
class ExistingRules : public generic<const std::string>, public list_completion {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    ShellWords list() const override;
};

// Tables that have a name, without the main one.
class ExistingTablesNumber : public generic<const std::string>, public list_completion {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    ShellWords list() const override;
};

class ExistingTablesName : public generic<const std::string>, public list_completion {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    ShellWords list() const override;
};

// A key of the DSCP table; a number is listed with its class: "0xB8 (EF)".
class DscpValue : public generic<const std::string>, public list_completion {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    ShellWords list() const override;
};

// 1024 to 2048, without leading zeros.
class PolicyPriority : public generic<const std::string> {
public:
    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    std::string sample() const override { return "1024..2048"; }
};

} // namespace value
