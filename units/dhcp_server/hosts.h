#pragma once

#include "units/dhcp_server/model/area.h"

#include <string>

// The hosts with fixed addresses. What an operation refuses it reports, and then leaves the file as it was.

namespace settings::dhcp_server {

// Adds a host to a subnet. `mac` is the hardware address, which must be new in the subnet as a text; ranges
// are not asked.
[[nodiscard]] bool AddHost(const Host& host, const Subnet& subnet, const std::string& mac,
                           const std::string& address);
// Shows the host, asks where somebody sits at a terminal, and removes it.
[[nodiscard]] bool EraseHost(const Host& host);

} // namespace settings::dhcp_server
