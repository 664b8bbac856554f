#pragma once

#include <string>

namespace interfaces {

// The kernel's name of the trunk's VLAN child, "" when it has none. Both go into a shell line as they are,
// and what comes out can go into one.
std::string GetVlanInterfaceName(const std::string& parent, const std::string& id);

// inet ifconfig <parent> vlan add <id>
[[nodiscard]] bool AddVlan(const std::string& parent, unsigned long id);
// inet ifconfig <parent> vlan delete <id>. Several refusals stand in the log alone.
[[nodiscard]] bool DeleteVlan(const std::string& parent, const std::string& id);
// inet vlan <id> comment add "<text>", inet vlan <id> comment delete. The VLAN need not exist.
[[nodiscard]] bool AddVlanComment(const std::string& id, const std::string& text);
[[nodiscard]] bool DeleteVlanComment(const std::string& id);

} // namespace interfaces
