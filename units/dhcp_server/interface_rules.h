#pragma once

#include "records/conf_struct.h"
#include "units/dhcp_server/model/area.h"

#include <string>

namespace settings::dhcp_relay {
class InterfaceIndex;
}

// The rules between the DHCP server and the appliance's interfaces.

namespace settings::dhcp_server {

constexpr const char* kListenInterface = "listen interface";

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

} // namespace settings::dhcp_server
