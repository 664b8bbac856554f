#pragma once

#include "units/dhcp_server/model/area.h"

#include <string>

// The options of one value and the lease times of an area. What an operation refuses it reports, and then
// leaves the file as it was; a value that is overwritten is warned of. Values come checked for their form
// from the command line.

namespace settings::dhcp_server {

[[nodiscard]] bool SetSubnetMask(const Area& area, const std::string& mask);
[[nodiscard]] bool ClearSubnetMask(const Area& area);
// Sets the broadcast of the area's address and mask.
[[nodiscard]] bool SetBroadcastAddress(const Area& area);
[[nodiscard]] bool ClearBroadcastAddress(const Area& area);
[[nodiscard]] bool SetDomainName(const Area& area, const std::string& name);
[[nodiscard]] bool ClearDomainName(const Area& area);
// An empty `file` leaves the boot file that an earlier call has set.
[[nodiscard]] bool SetTftpServer(const Area& area, const std::string& server, const std::string& file);
[[nodiscard]] bool ClearTftpServer(const Area& area);
// Any other option by its name; `label` is its word in messages.
[[nodiscard]] bool SetNamedOption(const Area& area, const char* name, const char* label,
                                  const std::string& value);
[[nodiscard]] bool ClearNamedOption(const Area& area, const char* name, const char* label);
// A custom option has one type, "ip", "ascii" or "hex", across the whole file.
[[nodiscard]] bool SetCustomOption(const Area& area, const std::string& number, const std::string& type,
                                   const std::string& value);
[[nodiscard]] bool ClearCustomOption(const Area& area, const std::string& number);

// In seconds.
[[nodiscard]] bool SetDefaultLeaseTime(const Area& area, const std::string& seconds);
[[nodiscard]] bool ClearDefaultLeaseTime(const Area& area);
[[nodiscard]] bool SetMaxLeaseTime(const Area& area, const std::string& seconds);
[[nodiscard]] bool ClearMaxLeaseTime(const Area& area);

} // namespace settings::dhcp_server
