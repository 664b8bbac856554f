#pragma once

#include <string>

namespace routing {

// Shows the rules of a policy, or of all for "", page by page; with a priority, the rule of that priority
// alone. The daemon saves its configuration first. False, told on the terminal, when there is no such rule.
[[nodiscard]] bool ShowPolicy(const std::string& name, const std::string& priority);

} // namespace routing
