#pragma once

#include <string>

// An interface's address by DHCP. The script /sbin/dhcpclient.sh is the client.

namespace interfaces {

// inet ifconfig <name> dhcp. When the client can't be started, the settings are as before.
[[nodiscard]] bool SetDhcp(const std::string& name);
// inet ifconfig <name> dhcp <what> <on or off>; `what` is "route", "dns" or "ntp".
[[nodiscard]] bool SetDhcpUse(const std::string& name, const std::string& what, const std::string& value);
// inet ifconfig <name> dhcp route-metric <value>: a number, or "none" for the default.
[[nodiscard]] bool SetDhcpMetric(const std::string& name, const std::string& value);
// inet dhcp default-metric <value>
[[nodiscard]] bool SetDefaultDhcpMetric(const std::string& value);

} // namespace interfaces
