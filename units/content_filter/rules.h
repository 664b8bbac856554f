#pragma once

#include "units/content_filter/rule.h"

#include <cstddef>
#include <string>
#include <vector>

// The list of rules, in the order in which they are tried. Positions count from 1. Nothing is changed while
// the proxy runs; every refusal is reported and leaves the file as it was.

namespace settings::content_filter {

std::size_t GetRuleCount();
std::vector<std::string> ListRuleNames();

// Adds a rule in front of the one at `position`, or at the end when that is 0 or beyond the end. A rule
// without a name gets one, "rule_<number>".
[[nodiscard]] bool AddRule(std::size_t position, const std::string& name, const std::string& source,
                           const std::string& destination, const std::string& command,
                           const std::string& mime_type, const std::string& action);
// Changes the rule at `position`; an empty value stays as it is.
[[nodiscard]] bool EditRule(std::size_t position, const std::string& name, const std::string& source,
                            const std::string& destination, const std::string& command,
                            const std::string& mime_type, const std::string& action);

// Moves a rule to the position `to`; 0 and what is beyond the end are the last position.
[[nodiscard]] bool MoveRule(std::size_t from, std::size_t to);
[[nodiscard]] bool MoveRuleByName(const std::string& name, std::size_t to);

[[nodiscard]] bool DeleteRule(std::size_t position);
[[nodiscard]] bool DeleteRuleByName(const std::string& name);

} // namespace settings::content_filter
