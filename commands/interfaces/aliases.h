#pragma once

#include <string>

// Further addresses of an interface. The script /sbin/ifalias.sh changes the system and names the alias.

namespace interfaces {

// inet ifconfig <name> address add <address> <netmask>
[[nodiscard]] bool AddAlias(const std::string& name, const std::string& address, const std::string& netmask);
// inet ifconfig <name> address delete <address> <netmask>
[[nodiscard]] bool DeleteAlias(const std::string& name, const std::string& address,
                               const std::string& netmask);

} // namespace interfaces
