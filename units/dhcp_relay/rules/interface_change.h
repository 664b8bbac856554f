#pragma once

#include <string>

namespace corvanshell {
class CommonConfStruct;
}

namespace settings::dhcp_relay {

// Whether an interface command may change the interface. Faults are errors when the relays start with the
// appliance and warnings otherwise.
[[nodiscard]] bool CheckRelayInterfaceChange(const std::string& interface, bool going_down,
                                             bool changing_address, const std::string& new_class);
// The same with the common record, which says whether the relays start, read already. The network record
// plays no part in it.
[[nodiscard]] bool CheckRelayInterfaceChange(const corvanshell::CommonConfStruct& common,
                                             const std::string& interface, bool going_down,
                                             bool changing_address, const std::string& new_class);

} // namespace settings::dhcp_relay
