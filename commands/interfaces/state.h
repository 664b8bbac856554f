#pragma once

#include <string>

namespace interfaces {

// inet ifconfig <name> up, inet ifconfig <name> down. A trunk's VLAN children follow, after a question.
[[nodiscard]] bool SetState(const std::string& name, const std::string& word);

} // namespace interfaces
