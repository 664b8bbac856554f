#pragma once

#include "commands/interfaces/command_frame.h"
#include "records/network_crossing.h"

#include <string>

namespace interfaces {

// inet ifconfig <name> address <address> netmask <netmask>
[[nodiscard]] bool SetAddress(const std::string& name, const std::string& address,
                              const std::string& netmask);

// The typed address and netmask with their broadcast. False, told, unless they are such, and the netmask
// leaves room for more than one network.
[[nodiscard]] bool ReadNetwork(const std::string& address, const std::string& netmask,
                               corvanshell::Network& network);

// Whether an interface can work with what is typed for it: no loopback, no multicast, and neither the address
// nor the broadcast of the network itself. A refusal is told. The actions leave it to the shell, so that a
// script can still set what an earlier system had.
[[nodiscard]] bool CanHostHave(const std::string& address, const std::string& netmask);

// Whether the network proposed for the interface, as its address or an alias, crosses no other. A refusal is
// told with `failure`, the sentence of the command.
[[nodiscard]] bool IsNetworkFree(const InterfaceEdit& edit, const corvanshell::Network& network,
                                 const std::string& failure);

} // namespace interfaces
