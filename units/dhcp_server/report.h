#pragma once

#include <string>

// What an administrator reads of the DHCP server. Each takes the lock of the unit's settings for reading and
// reports what fails.

namespace settings::dhcp_server {

// State and settings, in a readable form.
[[nodiscard]] bool PrintDhcpServer();

// The settings file as it is.
[[nodiscard]] bool DumpDhcpServer();

// The leases: the whole database for "full", otherwise the report of dhcp-lease-list(1) with that option,
// given without its "--".
[[nodiscard]] bool ShowDhcpLeases(const std::string& mode);

} // namespace settings::dhcp_server
