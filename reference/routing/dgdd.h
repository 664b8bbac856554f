#pragma once

#include "reference/routing/daemon.h"

#include <cstdint>
#include <map>

namespace reference::routing {

// The daemon of the dead gateway detection. What its checks found stands in /run/quagga/dgd-states, a line
// for each next hop: "<name> up|down <successes> <failures> <last change>".
class Dgdd : public Daemon {
public:
    [[nodiscard]] bool Configure(const Words& words) override;
    [[nodiscard]] bool Show(const Words& words, std::string& output) const override;
    std::string Configuration() const override;
    void LeaveSection() override;

private:
    struct NextHop {
        bool dynamic = false;
        std::string place; // address or interface
        std::string test_address;
        bool checked = true;
        std::string check_type = "icmp";
    };
    struct Rule {
        std::map<std::string, std::string> states; // by next hop
        std::map<std::uint32_t, std::string> actions;
    };

    bool ConfigureSetting(const Words& words);
    bool ConfigureSyslog(const Words& words, bool remove);
    bool ConfigureNextHop(const Words& words, bool remove);
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
