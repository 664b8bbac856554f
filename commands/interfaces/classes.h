#pragma once

#include <string>

namespace interfaces {

// inet ifconfig <name> class access. Its addresses in the settings go.
[[nodiscard]] bool SetAccessClass(const std::string& name);
// inet ifconfig <name> class trunk. Its addresses go, after a question.
[[nodiscard]] bool SetTrunkClass(const std::string& name);

} // namespace interfaces
