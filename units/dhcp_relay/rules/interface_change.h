#pragma once

#include <string>

namespace settings::dhcp_relay {

// Whether an interface command may change the interface. Faults are errors when the relays start with the
// appliance and warnings otherwise.
[[nodiscard]] bool CheckRelayInterfaceChange(const std::string& interface, bool going_down,
                                             bool changing_address, const std::string& new_class);

} // namespace settings::dhcp_relay
