#pragma once

#include "commands/dgd/next_hops.h"

#include <string>

// The `inet dgd` commands. Names are 1 to 63 letters, digits and "-". Each is false when it was refused,
// cancelled or has failed, which is told on the terminal.

namespace dgd {

using nexthop::NewNextHop;

// "on" starts the dead gateway detection, now and with the appliance; any other word stops it.
[[nodiscard]] bool SetMode(const std::string& mode);

// inet dgd configuration
[[nodiscard]] bool SetResponseTime(unsigned long seconds);
[[nodiscard]] bool SetIntervalTime(unsigned long seconds);
[[nodiscard]] bool SetRetriesCount(unsigned long count);
[[nodiscard]] bool SetSyslogLevel(long level); // an index, negative for no log
[[nodiscard]] bool SetDefaults();

// inet dgd next-hop: a gateway by its address, and the one behind an interface.
[[nodiscard]] bool AddNextHop(const NewNextHop& added);
[[nodiscard]] bool AddInterfaceNextHop(const NewNextHop& added);
[[nodiscard]] bool DeleteNextHop(const std::string& name);

// inet dgd rule
[[nodiscard]] bool AddRuleMatch(const std::string& rule, const std::string& next_hop,
                                const std::string& state);
[[nodiscard]] bool DeleteRuleMatch(const std::string& rule, const std::string& next_hop,
                                   const std::string& state);
[[nodiscard]] bool AddRulePolicyAction(const std::string& rule, unsigned long priority,
                                       const std::string& policy);
[[nodiscard]] bool AddRuleLogAction(const std::string& rule, unsigned long priority, const std::string& text);
[[nodiscard]] bool DeleteRuleAction(const std::string& rule, unsigned long priority);
[[nodiscard]] bool ClearRule(const std::string& rule);

// inet show dgd; "" shows all.
[[nodiscard]] bool ShowNextHop(const std::string& name);
[[nodiscard]] bool ShowRule(const std::string& name);
[[nodiscard]] bool ShowConfiguration();

} // namespace dgd
