#pragma once

#include "units/dhcp_server/model/area.h"

#include <string>

// The options that hold a list of addresses. Each operation adds or removes one address of an area, reports
// what it refuses and then leaves the file as it was.

namespace settings::dhcp_server {

[[nodiscard]] bool AddRouter(const Area& area, const std::string& value);
[[nodiscard]] bool RemoveRouter(const Area& area, const std::string& value);
[[nodiscard]] bool AddNtpServer(const Area& area, const std::string& value);
[[nodiscard]] bool RemoveNtpServer(const Area& area, const std::string& value);
[[nodiscard]] bool AddDnsServer(const Area& area, const std::string& value);
[[nodiscard]] bool RemoveDnsServer(const Area& area, const std::string& value);
[[nodiscard]] bool AddVoipTftpServer(const Area& area, const std::string& value);
[[nodiscard]] bool RemoveVoipTftpServer(const Area& area, const std::string& value);
[[nodiscard]] bool AddWinsServer(const Area& area, const std::string& value);
[[nodiscard]] bool RemoveWinsServer(const Area& area, const std::string& value);

// Adds a value to any list option, as a child of that name. `maximum` 0 sets no limit.
[[nodiscard]] bool AddListOptionValue(const Area& area, const char* option, const char* label,
                                      const char* child, const std::string& value, std::size_t maximum);

} // namespace settings::dhcp_server
