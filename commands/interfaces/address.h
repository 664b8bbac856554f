#pragma once

#include "commands/interfaces/command_frame.h"
#include "records/network_crossing.h"

#include <string>

namespace interfaces {

// inet ifconfig <name> address <address> netmask <netmask>
[[nodiscard]] bool SetAddress(const std::string& name, const std::string& address,
                              const std::string& netmask);

// The typed address and netmask with their broadcast. False, told, unless a host can have the address and the
// netmask has no holes and leaves room for more than one network.
[[nodiscard]] bool ReadNetwork(const std::string& address, const std::string& netmask,
                               corvanshell::Network& network);

// Whether the network proposed for the interface, as its address or an alias, crosses no other. A refusal is
// told with `failure`, the sentence of the command.
[[nodiscard]] bool IsNetworkFree(const InterfaceEdit& edit, const corvanshell::Network& network,
                                 const std::string& failure);

} // namespace interfaces
