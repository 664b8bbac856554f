#pragma once

#include <string>

// The `inet dgd` commands. Names are 1 to 63 letters, digits and "-". Each is false when it was refused,
// cancelled or has failed, which is told on the terminal.

namespace dgd {

// "on" starts the dead gateway detection, now and with the appliance; any other word stops it.
[[nodiscard]] bool SetMode(const std::string& mode);

// inet dgd configuration
[[nodiscard]] bool SetResponseTime(unsigned long seconds);
[[nodiscard]] bool SetIntervalTime(unsigned long seconds);
[[nodiscard]] bool SetRetriesCount(unsigned long count);
[[nodiscard]] bool SetSyslogLevel(long level); // an index, negative for no log
[[nodiscard]] bool SetDefaults();

// inet dgd next-hop. `check` is "no-check" or the daemon's word, `type` a check type; a test address of ""
// was left out; the interface "modem" is that of a USB modem.
[[nodiscard]] bool AddNextHop(const std::string& name, const std::string& address, const std::string& check,
                              const std::string& type);
[[nodiscard]] bool AddNextHop(const std::string& name, const std::string& address,
                              const std::string& test_address, const std::string& check,
                              const std::string& type);
[[nodiscard]] bool AddInterfaceNextHop(const std::string& name, const std::string& interface,
                                       const std::string& check, const std::string& type);
[[nodiscard]] bool AddInterfaceNextHop(const std::string& name, const std::string& interface,
                                       const std::string& test_address, const std::string& check,
                                       const std::string& type);
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
