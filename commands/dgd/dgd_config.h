#pragma once

#include "commands/dgd/next_hops.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace dgd {

using nexthop::NewNextHop;

inline constexpr const char* kSyslogLevels[] = {"critical", "errors", "notifications", "informational",
                                                "debugging"};

// Whether the section of that header in the saved configuration holds the words; "" asks for the section
// itself.
bool ConfigSectionHas(const std::string& section, const std::string& word);

// A command's mirror of the daemon of the dead gateway detection. A change is one shell line under the
// settings lock; behind one that succeeded the mirror is loaded again. What is refused prints nothing unless
// it says so, and nothing is sent behind it.
class DgdConfig {
public:
    bool enabled = false;   // starts with the appliance
    bool running = false;   // now
    int wait_timeout = 3;   // seconds
    int check_interval = 3; // seconds
    int fail_count = 3;
    int syslog_level = -1; // index into kSyslogLevels, -1 when logging is off
    int next_hop_count = 0;
    int rule_count = 0;
    std::set<std::string> names; // of configured next hops
    std::map<std::string, std::unique_ptr<nexthop::NextHop>> next_hops;

    // False when the daemon does not answer, or, with a warning in the log, when the settings lock is not
    // granted.
    [[nodiscard]] bool Load();
    // Whether a question or a change was refused. Answers are empty then.
    bool HasRefused() const { return has_refused_; }

    // Settings of the daemon: "dgd wait-timeout 5", "no log syslog".
    [[nodiscard]] bool Set(const std::string& setting);

    // Next hops. False, told on the terminal, when there is one of that name with other fields.
    [[nodiscard]] bool CheckNextHopAddr(const NewNextHop& added);
    [[nodiscard]] bool CheckNextHopAddr(const std::string& name, const std::string& address,
                                        const std::string& check, const std::string& type,
                                        const std::string& test_address) {
        return CheckNextHopAddr({name, address, test_address, check, type});
    }
    [[nodiscard]] bool CheckNextHopIface(const NewNextHop& added);
    [[nodiscard]] bool CheckNextHopIface(const std::string& name, const std::string& interface,
                                         const std::string& check, const std::string& type,
                                         const std::string& test_address) {
        return CheckNextHopIface({name, interface, test_address, check, type});
    }
    [[nodiscard]] bool NextHopExists(const std::string& name);
    [[nodiscard]] bool IfaceInUse(const std::string& interface);
    // Without a test address the next hop is tested itself. An address in use is told on the terminal.
    [[nodiscard]] bool AddStatic(const NewNextHop& added);
    [[nodiscard]] bool AddDynamic(const NewNextHop& added);
    // `kind` is "next-hop" or "dyn-next-hop". Refuses, on the terminal, while a rule refers to it.
    [[nodiscard]] bool DeleteNextHop(const std::string& kind, const std::string& name);
    std::string ShowNextHops(const std::string& name); // of all for ""

    // Rules. A rule goes with its last line.
    [[nodiscard]] bool AddMatch(const std::string& rule, const std::string& name, const std::string& state);
    [[nodiscard]] bool DeleteMatch(const std::string& rule, const std::string& name);
    // A policy that doesn't exist is told on the terminal.
    [[nodiscard]] bool AddPolicyAction(const std::string& rule, unsigned long priority,
                                       const std::string& policy);
    [[nodiscard]] bool AddLogAction(const std::string& rule, unsigned long priority, const std::string& text);
    [[nodiscard]] bool DeleteAction(const std::string& rule, unsigned long priority);
    [[nodiscard]] bool ClearRule(const std::string& rule);
    std::string ShowRules(const std::string& name); // of all for ""

    std::string ShowConfiguration() const;

private:
    using Lines = std::vector<std::string>;

    [[nodiscard]] bool Took(bool done);
    [[nodiscard]] bool Ask(const std::string& question, Lines& lines);
    [[nodiscard]] bool AskConfiguration(Lines& lines);
    [[nodiscard]] bool Change(const std::vector<std::string>& parts);
    void TakeConfiguration(const Lines& lines);
    void TakeLogging(const Lines& lines);
    [[nodiscard]] bool CheckAddressUnused(const NewNextHop& added);
    [[nodiscard]] bool CheckPolicy(const std::string& policy);
    [[nodiscard]] bool RemoveEmptyRule(const std::string& rule);
    [[nodiscard]] bool ListNextHops();
    const nexthop::NextHop* FindNextHop(const std::string& name) const;

    bool has_refused_ = false;
};

} // namespace dgd
