#pragma once

#include <string>

namespace settings::dhcp_relay {

// Takes a relay's line out of the daemon's settings file; the other lines stay. True and nothing done when
// there is no such file or no such line. Every failure is reported.
[[nodiscard]] bool RemoveRelayKnob(const std::string& id);

} // namespace settings::dhcp_relay
