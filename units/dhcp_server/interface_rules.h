#pragma once

#include "records/conf_struct.h"
#include "settings/file.h"
#include "units/dhcp_server/model/area.h"

#include <string>

namespace settings::dhcp_relay {
class InterfaceIndex;
}

// The rules between the DHCP server and the appliance's interfaces.

namespace settings::dhcp_server {

// Whether the server may use the interface: no DHCP relay listens on it, and it is an access interface with
// a static address that is up. The label is "listen interface" or "relay interface". A fault is reported as
// an error when `strict`, else as a warning, and fails in both cases. Each rule of this page has a form for a
// network record that is open already; one that was not read is an error always.
[[nodiscard]] bool CheckServedInterface(const std::string& interface, bool is_listen, bool strict);
[[nodiscard]] bool CheckServedInterface(const corvanshell::CConfStruct& record, const std::string& interface,
                                        bool is_listen, bool strict);
// The same for a walk, which knows the relays.
[[nodiscard]] bool CheckServedInterface(const corvanshell::CConfStruct& record,
                                        const dhcp_relay::InterfaceIndex& relays,
                                        const std::string& interface, bool is_listen, bool strict);
[[nodiscard]] bool CheckInterfaceUsable(const std::string& interface, const char* label, bool strict);
[[nodiscard]] bool CheckInterfaceUsable(const corvanshell::CConfStruct& record, const std::string& interface,
                                        const char* label, bool strict);

// False, reported, for a remote subnet whose relay interface serves no subnet of its own.
[[nodiscard]] bool RefuseRelay(const Area& area);

// Brings the subnet of a listen interface along with the interface's changed address or mask, and saves. True
// and nothing done when the server does not use the interface.
[[nodiscard]] bool UpdateListenInterface(File& file, const std::string& interface, bool strict);
[[nodiscard]] bool UpdateListenInterface(const corvanshell::CConfStruct& record, File& file,
                                         const std::string& interface, bool strict);

// The same for an interface command, which goes on whatever comes of it; a failure is reported. The record
// has the interface's new address already.
void UpdateDhcpServerInterface(const std::string& interface, bool strict);
void UpdateDhcpServerInterface(const corvanshell::CConfStruct& record, const std::string& interface,
                               bool strict);

// Whether an interface command may change the interface, which the record has as it is now. An address or
// netmask of "0.0.0.0" stands for one that does not change. Faults are errors when the server starts with the
// appliance and warnings otherwise.
[[nodiscard]] bool CheckDhcpServerInterfaceChange(const std::string& interface, bool going_down,
                                                  const std::string& new_class,
                                                  const std::string& new_address,
                                                  const std::string& new_netmask);
[[nodiscard]] bool CheckDhcpServerInterfaceChange(const corvanshell::CConfStruct& record,
                                                  const std::string& interface, bool going_down,
                                                  const std::string& new_class,
                                                  const std::string& new_address,
                                                  const std::string& new_netmask);

} // namespace settings::dhcp_server
