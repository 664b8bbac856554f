#pragma once

#include <string>

namespace corvanshell {
class CConfStruct;
}

// The listen interfaces of relays, the internal interfaces whose clients they serve. Every refusal is
// reported and leaves the file as it was.

namespace settings::dhcp_relay {

[[nodiscard]] bool AddRelayListenInterface(const std::string& id, const std::string& interface);
[[nodiscard]] bool RemoveRelayListenInterface(const std::string& id, const std::string& interface);

// The interface is known to the network record, of class "access" and has a static address.
[[nodiscard]] bool CheckListenInterfaceUsable(const std::string& id, const std::string& interface);
// The same against a network record that is read already.
[[nodiscard]] bool CheckListenInterfaceUsable(const corvanshell::CConfStruct& record, const std::string& id,
                                              const std::string& interface);

} // namespace settings::dhcp_relay
