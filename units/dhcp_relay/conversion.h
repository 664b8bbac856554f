#pragma once

#include <string>

namespace settings::dhcp_relay {

// Makes the settings file anew from a daemon file of an earlier system, which knew one relay:
//
//     SERVERS="10.0.0.5 10.0.0.6"
//     EXTERNAL="eth0"
//     INTERFACES="eth1 eth2"     # comments end a line
//
// The relay gets the ID 1 and takes the first server and the first external interface. A file without any
// of the three makes settings without relays. Every failure is reported.
[[nodiscard]] bool ConvertRelayDaemonSettings(const std::string& path);

} // namespace settings::dhcp_relay
