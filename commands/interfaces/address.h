#pragma once

#include "commands/interfaces/command_frame.h"

#include <string>

namespace interfaces {

// inet ifconfig <name> address <address> netmask <netmask>
[[nodiscard]] bool SetAddress(const std::string& name, const std::string& address,
                              const std::string& netmask);

// Whether the network proposed for the interface, as its address or an alias, crosses no other. A refusal is
// told with `failure`, the sentence of the command.
[[nodiscard]] bool IsNetworkFree(const InterfaceEdit& edit, const std::string& address,
                                 const std::string& broadcast, const std::string& netmask,
                                 const std::string& failure);

// An address that a host can have, and a netmask without holes that leaves room for hosts' networks. A
// refusal is told.
[[nodiscard]] bool AreAddressAndNetmaskUsable(const std::string& address, const std::string& netmask);

} // namespace interfaces
