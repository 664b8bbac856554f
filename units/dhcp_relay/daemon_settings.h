#pragma once

#include "settings/file.h"

#include <cstdio>
#include <string>

// The relay daemons' settings file, which their start script reads with /bin/sh, one line for each relay:
//
//     DHCP_RELAY_1='-i eth1 -i eth2 -iu eth0 10.0.0.5 10.0.0.6'

namespace settings::dhcp_relay {

// Writes the file anew, or just the line of relay `id` unless that is empty. Every fault is reported; a
// relay with a fault gets no line.
[[nodiscard]] bool WriteRelayDaemonSettings(const File& file, const std::string& id);

// Checks the relays, or relay `id` unless that is empty, and writes their lines to `out` unless that is null.
[[nodiscard]] bool GenerateRelaySettings(const File& file, std::FILE* out, const std::string& id);

} // namespace settings::dhcp_relay
