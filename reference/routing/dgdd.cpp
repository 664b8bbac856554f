#include "reference/routing/dgdd.h"

#include "reference/routing/store.h"

#include <algorithm>
#include <iterator>

namespace reference::routing {
namespace {

constexpr const char* kLevels[] = {"critical", "errors", "notifications", "informational", "debugging"};
constexpr const char* kCheckTypes[] = {"icmp", "tcp80", "tcp443"};
constexpr const char* kModem = "modem";

bool IsOneOf(const char* const* begin, const char* const* end, const std::string& word) {
    return std::any_of(begin, end, [&](const char* candidate) { return word == candidate; });
}

// The words behind the name in the next hop's line of the states.
Words StateOf(const std::string& name) {
    const std::string text = ReadWhole(kDgdStates).value_or("");
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        Words words = Split(std::string_view(text).substr(start, end - start));
        if (words.size() >= 4 && words[0] == name)
            return {words.begin() + 1, words.end()};
        start = end + 1;
    }
    return {"unknown", "0", "0", "never"};
}

} // namespace

void Dgdd::LeaveSection() {
    Daemon::LeaveSection();
    next_hop_ = nullptr;
    rule_ = nullptr;
}

bool Dgdd::Configure(const Words& words) {
    const bool remove = words.front() == "no" && words.size() > 1;
    const Words line(words.begin() + (remove ? 1 : 0), words.end());
    if (line[0] == "dgd" && !remove)
        return ConfigureSetting(line);
    if (StartsWith(line, {"log", "syslog"}))
        return ConfigureSyslog(line, remove);
    if (line[0] == "next-hop" || line[0] == "dyn-next-hop")
        return ConfigureNextHop(line, remove);
    if (line[0] == "dgd-rule")
        return ConfigureRule(line, remove);
    if (next_hop_ != nullptr)
        return ConfigureNextHopItem(line, remove);
    return rule_ != nullptr && ConfigureRuleItem(line, remove);
}

bool Dgdd::ConfigureSetting(const Words& words) {
    const auto setting = settings_.find(words.size() == 3 ? words[1] : "");
    const auto value = setting == settings_.end()
                           ? std::nullopt
                           : ToNumber(words[2], 1, words[1] == "fail-count" ? 10 : 120);
    if (value)
        setting->second = *value;
    return value.has_value();
}

bool Dgdd::ConfigureSyslog(const Words& words, bool remove) {
    if (remove ? words.size() != 2
               : words.size() != 3 || !IsOneOf(std::begin(kLevels), std::end(kLevels), words[2]))
        return false;
    syslog_level_ = remove ? "" : words[2];
    return true;
}

bool Dgdd::ConfigureNextHop(const Words& words, bool remove) {
    if (words.size() != 2 || !IsName(words[1]))
        return false;
    const bool dynamic = words[0] == "dyn-next-hop";
    const auto known = next_hops_.find(words[1]);
    if (known != next_hops_.end() && known->second.dynamic != dynamic)
        return false;
    LeaveSection();
    if (remove)
        return !IsMatched(words[1]) && next_hops_.erase(words[1]) == 1;
    next_hop_ = &next_hops_[words[1]];
    next_hop_->dynamic = dynamic;
    EnterSection();
    return true;
}

bool Dgdd::IsMatched(const std::string& next_hop) const {
    return std::any_of(rules_.begin(), rules_.end(),
                       [&](const auto& rule) { return rule.second.states.contains(next_hop); });
}

bool Dgdd::ConfigureRule(const Words& words, bool remove) {
    if (words.size() != 2 || !IsName(words[1]))
        return false;
    LeaveSection();
    if (remove)
        return rules_.erase(words[1]) == 1;
    rule_ = &rules_[words[1]];
    EnterSection();
    return true;
}

bool Dgdd::ConfigureNextHopItem(const Words& words, bool remove) {
    if (Equal(words, {"check"})) {
        next_hop_->checked = !remove;
        return true;
    }
    if (remove || words.size() != 2)
        return false;
    if (words[0] == (next_hop_->dynamic ? "interface" : "address")) {
        const bool good = next_hop_->dynamic ? IsInterface(words[1]) : ToAddress(words[1]).has_value();
        if (good)
            next_hop_->place = words[1];
        return good;
    }
    if (words[0] == "test-address" && ToAddress(words[1])) {
        next_hop_->test_address = words[1];
        return true;
    }
    if (words[0] != "check-type" || !IsOneOf(std::begin(kCheckTypes), std::end(kCheckTypes), words[1]))
        return false;
    next_hop_->check_type = words[1];
    return true;
}

// match next-hop <name> state up|down; action <priority> route policy <name>; action <priority> zlog <text>
bool Dgdd::ConfigureRuleItem(const Words& words, bool remove) {
    if (StartsWith(words, {"match", "next-hop"})) {
        if (remove)
            return words.size() == 3 && rule_->states.erase(words[2]) == 1;
        if (words.size() != 5 || words[3] != "state" || (words[4] != "up" && words[4] != "down") ||
            !next_hops_.contains(words[2]))
            return false;
        rule_->states[words[2]] = words[4];
        return true;
    }
    const auto priority =
        words[0] == "action" && words.size() > 1 ? ToNumber(words[1], 0, UINT32_MAX) : std::nullopt;
    if (!priority)
        return false;
    if (remove)
        return words.size() == 2 && rule_->actions.erase(*priority) == 1;
    const std::string action = Join(words, 2);
    const bool is_policy = action.starts_with("route policy ") && words.size() == 5 && IsName(words[4]);
    if (!is_policy && !action.starts_with("zlog "))
        return false;
    return rule_->actions.emplace(*priority, action).second;
}

std::string Dgdd::Configuration() const {
    std::string text = "!\n";
    for (const auto& [key, value] : settings_)
        text += "dgd " + key + " " + std::to_string(value) + "\n";
    if (!syslog_level_.empty())
        text += "log syslog " + syslog_level_ + "\n";
    text += "!\n";
    for (const auto& [name, next_hop] : next_hops_) {
        text += (next_hop.dynamic ? "dyn-next-hop " : "next-hop ") + name + "\n";
        if (!next_hop.place.empty())
            text += (next_hop.dynamic ? " interface " : " address ") + next_hop.place + "\n";
        if (!next_hop.test_address.empty())
            text += " test-address " + next_hop.test_address + "\n";
        text += next_hop.checked ? " check\n check-type " + next_hop.check_type + "\n" : " no check\n";
        text += "!\n";
    }
    for (const auto& [name, rule] : rules_) {
        text += "dgd-rule " + name + "\n";
        for (const auto& [next_hop, state] : rule.states)
            text += " match next-hop " + next_hop + " state " + state + "\n";
        for (const auto& [priority, action] : rule.actions)
            text += " action " + std::to_string(priority) + " " + action + "\n";
        text += "!\n";
    }
    return text;
}

std::string Dgdd::ShowNextHops() const {
    std::string text;
    for (const auto& [name, next_hop] : next_hops_) {
        const Words state = StateOf(name);
        text += (next_hop.dynamic ? "Dynamic next hop " : "Static next hop ") + name + "\n";
        if (next_hop.dynamic)
            text += "  Next hop interface: " + next_hop.place +
                    (next_hop.place == kModem ? " (usb-modem)" : "") +
                    "\n  Next hop IP address: not set\n  Current global state: " + state[0] + "\n";
        else
            text += "  Next hop IP address: " + next_hop.place + "\n";
        text += "  Check type " + (next_hop.checked ? next_hop.check_type : "no check") + "\n";
        if (!next_hop.test_address.empty())
            text += "  Tested IP address: " + next_hop.test_address + "\n";
        text += "    Current state: " + state[0] +
                "\n    Successful checks (since state change): " + state[1] +
                "\n    Failed checks (since state change): " + state[2] +
                "\n    State last changed: " + Join(state, 3) + "\n\n";
    }
    return text;
}

bool Dgdd::Show(const Words& words, std::string& output) const {
    if (Equal(words, {"show", "next-hop"}))
        output = ShowNextHops();
    else if (Equal(words, {"show", "logging"}))
        output = "Syslog logging: " +
                 (syslog_level_.empty() ? "disabled" : "level " + syslog_level_ + ", facility daemon") +
                 "\nStdout logging: disabled\n";
    else
        return false;
    return true;
}

} // namespace reference::routing
