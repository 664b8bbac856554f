#pragma once

#include <string>

namespace corvanshell {
class CConfStruct;
}

// The DHCP servers behind relays. `server_id` is "0" for a relay's external server and "1" for its backup,
// `server` an IPv4 address or a DNS name, `interface` the external interface that reaches it. Every refusal
// is reported and leaves the file as it was.

namespace settings::dhcp_relay {

[[nodiscard]] bool AddRelayServer(const std::string& id, const std::string& server_id,
                                  const std::string& server, const std::string& interface);
[[nodiscard]] bool RemoveRelayServer(const std::string& id, const std::string& server_id,
                                     const std::string& server, const std::string& interface);

// The server is an address or a name, and its interface is known, of class "access" and has an address.
[[nodiscard]] bool CheckRelayServer(const std::string& id, const std::string& server,
                                    const std::string& interface);
// The same against a network record that is read already.
[[nodiscard]] bool CheckRelayServer(const corvanshell::CConfStruct& record, const std::string& id,
                                    const std::string& server, const std::string& interface);

// Removes the relay; with the last one, the settings file and the daemon's settings too.
[[nodiscard]] bool EraseRelay(const std::string& id);

} // namespace settings::dhcp_relay
