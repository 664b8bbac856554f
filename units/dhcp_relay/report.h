#pragma once

#include <string>

// What the administrator reads of the relays. Both hold the settings lock while they read, and neither while
// the pager waits. Every failure is reported.

namespace settings::dhcp_relay {

// Shows the relays and their state, or relay `id` alone unless that is empty.
[[nodiscard]] bool PrintDhcpRelays(const std::string& id);

// Shows the settings file as it is.
[[nodiscard]] bool DumpRelaySettings();

} // namespace settings::dhcp_relay
