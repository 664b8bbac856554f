#pragma once

#include <string>

// What the policy commands ask before and after a change. A rule is the block "ip rule <name> <priority>" of
// the daemon's configuration.

namespace routing {

// What the administrator is told is disabled on a passive node.
inline constexpr const char* kPolicyFeature = "VPN policy management";

std::string RuleHeader(const std::string& name, unsigned long priority);

// Whether the rule has no item of that kind yet: "from", "to", "inbound-interface", "outbound-interface",
// "tos", and "set" for its one action. Asks the daemon; one that doesn't answer has no such rule.
bool IsRuleSlotFree(const std::string& name, unsigned long priority, const std::string& key);

// Whether the block of that header has the item, given with its leading blank.
bool RuleHasItem(const std::string& header, const std::string& item);
int CountRuleItems(const std::string& name, unsigned long priority);

// Removes the rule when it has no items left. A failure is told on the terminal.
void RemoveEmptyRule(const std::string& name, unsigned long priority);

// Whether no rule of the dead gateway detection activates the policy.
bool IsPolicyUnreferenced(const std::string& name);
// The same, telling the administrator when one does.
[[nodiscard]] bool CheckPolicyUnreferenced(const std::string& name);

bool TableNameExists(const std::string& table);
bool TableNumberExists(const std::string& number);

} // namespace routing
