#pragma once

#include <string>

// The running system gets what the settings say.

namespace interfaces {

// inet ifconfig <name> reset
[[nodiscard]] bool ResetInterface(const std::string& name);
// inet ifconfig all reset
[[nodiscard]] bool ResetAllInterfaces();

} // namespace interfaces
