#pragma once

#include "records/conf_struct.h"
#include "records/network_crossing.h"

#include <string>

// Who uses an interface and has a say in its changes, or has to follow them: the DHCP server, the relays, the
// web interface's certificate.

namespace interfaces {

// A change as the users are asked about it.
struct Change {
    bool going_down = false;
    bool address_changes = false; // as the relays are asked
    std::string new_class = corvanshell::kAccessClass;
    corvanshell::Network network = {"0.0.0.0", "0.0.0.0", ""}; // as the server is asked; this is no change
};

// Whether the DHCP server and the relays let the interface, which the record has as it is now, change so. The
// reason is told.
[[nodiscard]] bool CheckDhcpServer(const corvanshell::CConfStruct& record, const std::string& name,
                                   const Change& change);
[[nodiscard]] bool CheckDhcpRelay(const std::string& name, const Change& change);

// Both, the server first. Who refuses the change, "server" or "relay"; null when nobody does.
[[nodiscard]] const char* FindRefusingUser(const corvanshell::CConfStruct& record, const std::string& name,
                                           const Change& for_server, const Change& for_relay);
[[nodiscard]] const char* FindRefusingUser(const corvanshell::CConfStruct& record, const std::string& name,
                                           const Change& change);

// Warns when the web interface's HTTPS certificate names the address.
void WarnOfCertificate(const std::string& address);

// Has the DHCP server unit follow the interface's new address or state, which the record has.
void UpdateDhcpServer(const corvanshell::CConfStruct& record, const std::string& name);

} // namespace interfaces
