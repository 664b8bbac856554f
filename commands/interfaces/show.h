#pragma once

#include <string>

namespace interfaces {

// inet show interface
[[nodiscard]] bool ShowInterfaces();
// inet ping <target>: an address or a host name. Runs until the administrator ends it.
[[nodiscard]] bool Ping(const std::string& target);

} // namespace interfaces
