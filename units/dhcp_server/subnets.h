#pragma once

#include "units/dhcp_server/model/area.h"

#include <string>

// Subnets and their dynamic ranges. What an operation refuses it reports, and then leaves the file as it was.

namespace settings::dhcp_server {

// Adds a subnet with its mask and broadcast to the document; a null node when it exists already or the pair
// is no network, which is reported, or when it can't be made.
Node CreateSubnet(const Area& area, const File& file, const std::string& address, const std::string& netmask);

// Serves the network that the interface has by its own settings. The appliance becomes the clients' router,
// and their time and name server where it runs those services.
[[nodiscard]] bool AddListenInterface(const LocalSubnet& subnet);
// Serves a remote network whose requests come in through a listen interface.
[[nodiscard]] bool AddRelayInterface(const RemoteSubnet& subnet, const std::string& interface);

// Show the subnet, ask where somebody sits at a terminal, and remove it. A local subnet stays while remote
// ones hang on its interface.
[[nodiscard]] bool EraseSubnet(const Subnet& subnet);
[[nodiscard]] bool EraseLocalSubnet(const LocalSubnet& subnet);
[[nodiscard]] bool EraseRemoteSubnet(const RemoteSubnet& subnet, const std::string& interface);

[[nodiscard]] bool AddRange(const Subnet& subnet, const std::string& from, const std::string& to);
[[nodiscard]] bool RemoveRange(const Subnet& subnet, const std::string& from, const std::string& to);

// Whether the settings are clean; every fault is reported.
[[nodiscard]] bool CheckDhcpServerSettings();

} // namespace settings::dhcp_server
