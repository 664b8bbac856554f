#pragma once

#include <string>

namespace routing {

// inet policy rule clear <name> [<priority>]: after a question. A policy that the dead gateway detection
// needs stays.
[[nodiscard]] bool PolicyRuleClear(const std::string& name);
[[nodiscard]] bool PolicyRuleClear(const std::string& name, unsigned long priority);

// inet policy active <name>, and default
[[nodiscard]] bool PolicyActivate(const std::string& name);
[[nodiscard]] bool PolicyActivateDefault();

// inet show policy rule active, <name>, <name> <priority>, all
[[nodiscard]] bool ShowActivePolicy();
[[nodiscard]] bool ShowPolicyRule(const std::string& name);
[[nodiscard]] bool ShowPolicyRule(const std::string& name, unsigned long priority);
[[nodiscard]] bool ShowAllPolicyRules();

} // namespace routing
