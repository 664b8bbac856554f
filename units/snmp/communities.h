#pragma once

#include "settings/file.h"

#include <string>
#include <vector>

// Read-only communities of SNMPv1 and SNMPv2c.

namespace snmp {

// Sorted, each once.
std::vector<std::string> ListCommunities();
std::vector<std::string> ListCommunities(const settings::File& file);

// A name may be added twice.
[[nodiscard]] bool AddCommunity(const std::string& name);
[[nodiscard]] bool RenameCommunity(const std::string& old_name, const std::string& new_name);
[[nodiscard]] bool DeleteCommunity(const std::string& name);

} // namespace snmp
