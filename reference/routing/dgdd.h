#pragma once

#include "reference/routing/daemon.h"

#include <cstdint>
#include <map>

namespace reference::routing {

// What its checks found: a line for each next hop, "<name> up|down|unknown <successes> <failures> <last
// change>".
constexpr const char* kDgdStates = "/run/quagga/dgd-states";

// The configuration of the dead gateway detection.
class Dgdd : public Daemon {
public:
    [[nodiscard]] bool Configure(const Words& words) override;
    [[nodiscard]] bool Show(const Words& words, std::string& output) const override;
    std::string Configuration() const override;
    void LeaveSection() override;

    struct NextHop {
        bool dynamic = false;
        std::string place; // address or interface
        std::string test_address;
        bool checked = true;
        std::string check_type = "icmp";

        friend bool operator==(const NextHop&, const NextHop&) = default;
    };
    struct Rule {
        std::map<std::string, std::string> states; // by next hop
        std::map<std::uint32_t, std::string> actions;

        friend bool operator==(const Rule&, const Rule&) = default;
    };

    const std::map<std::string, NextHop>& NextHops() const { return next_hops_; }
    const std::map<std::string, Rule>& Rules() const { return rules_; }
    std::uint32_t Setting(const std::string& name) const { return settings_.at(name); }

private:
    bool ConfigureSetting(const Words& words);
    bool ConfigureSyslog(const Words& words, bool remove);
    bool ConfigureNextHop(const Words& words, bool remove);
    bool IsMatched(const std::string& next_hop) const; // by a rule
    bool ConfigureRule(const Words& words, bool remove);
    bool ConfigureNextHopItem(const Words& words, bool remove);
    bool ConfigureRuleItem(const Words& words, bool remove);
    std::string ShowNextHops() const;

    std::map<std::string, std::uint32_t> settings_{
        {"check-interval", 3}, {"fail-count", 3}, {"wait-timeout", 3}};
    std::string syslog_level_; // "" when off
    std::map<std::string, NextHop> next_hops_;
    std::map<std::string, Rule> rules_;
    NextHop* next_hop_ = nullptr; // the open section, if it is one
    Rule* rule_ = nullptr;
};

} // namespace reference::routing
