#pragma once

#include "platform/shell_tree.h"

#include <string>

// The arguments of the shell's own lines, as values of stages. Their checks are those of form alone: what is
// known to the settings, the actions say themselves.

namespace shell {

// A text that passes a check.
class Checked : public value::generic<const std::string> {
public:
    using Check = bool (*)(const std::string& text);

    explicit Checked(Check is_good) : is_good_(is_good) {}

    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override {
        const bool is_good = is_good_(word);
        if (is_good)
            parsed = word;
        return is_good;
    }

private:
    Check is_good_;
};

// The same with words to offer.
class Listed : public Checked, public value::list_completion {
public:
    using Words = ShellWords (*)();

    Listed(Check is_good, Words words) : Checked(is_good), words_(words) {}
    ShellWords list() const override { return words_(); }

private:
    Words words_;
};

// A text that is turned into the form that settings have.
class Turned : public value::generic<const std::string> {
public:
    using Turn = bool (*)(const std::string& text, std::string& turned);

    explicit Turned(Turn turn) : turn_(turn) {}

    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override {
        return turn_(word, parsed);
    }

private:
    Turn turn_;
};

// A decimal number in a range, without leading zeros.
class Range : public value::generic<const std::string> {
public:
    Range(unsigned long low, unsigned long high) : low_(low), high_(high) {}

    [[nodiscard]] bool parse(const std::string& word, std::string& parsed) const override;
    std::string sample() const override;

private:
    unsigned long low_;
    unsigned long high_;
};

// Checks of form. No text that passes can end a quoted one in a daemon's file.
bool IsText(const std::string& text); // without double quotes, backslashes and control characters
bool IsWord(const std::string& text); // the same without blanks, and not empty
bool IsDomainName(const std::string& text);
bool IsServerName(const std::string& text);  // an address or a domain name
bool IsAddressList(const std::string& text); // with ", " in between
bool IsBytes(const std::string& text);       // pairs of hexadecimal digits with ":" in between
bool IsPositive(const std::string& text);    // a number of 1 or more, without leading zeros
bool IsDateTime(const std::string& text);    // 31.12.2026-23:59:59

bool IsHostName(const std::string& text); // what the DHCP daemon takes: no part of it is empty or a mere "_"
bool IsVlanId(const std::string& text);
bool IsKernelMetric(const std::string& text); // of 32 bits
bool IsKernelMetricOrNone(const std::string& text);

// Forms that settings don't have.
bool TurnNetmask(const std::string& text, std::string& netmask); // also a prefix length: 24 or /24
bool TurnMac(const std::string& text,
             std::string& mac); // six pairs of digits with ":", also with "-" in between

// What the appliance has just now. What can't be read offers nothing.
ShellWords ListInterfaces();
ShellWords ListDhcpHosts();
ShellWords ListDhcpSubnets(); // addresses of remote subnets
ShellWords ListRelays();
ShellWords ListSnmpUsers();
ShellWords ListSnmpCommunities();
ShellWords ListFilterRules();
ShellWords ListTrapReceivers();
ShellWords ListRangeBegins();
ShellWords ListRangeEnds();
ShellWords ListRouteDestinations();
ShellWords ListRouteNextHops();
// Of what stands in front in the line that is typed.
ShellWords ListAliases();
ShellWords ListChildVlans();
ShellWords ListUserReceivers();
ShellWords ListPolicyPriorities();

// The words in front of the one that is typed just now.
const ShellWords& TypedWords();
void SetTypedWords(const ShellWords& words);

} // namespace shell
