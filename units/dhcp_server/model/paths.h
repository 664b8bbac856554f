#pragma once

// The files of the DHCP server unit.

// The host part of the unit's URI, the name in its settings file and the base name of that file.
inline constexpr const char* kDhcpServerUnit = "dhcp-server";

namespace settings::dhcp_server {

constexpr const char* kDaemonSettings = "/etc/dhcp/dhcpd.conf";
constexpr const char* kDaemonExtraSettings = "/etc/default/isc-dhcp-server";
constexpr const char* kPidFile = "/run/dhcp-server.pid";
constexpr const char* kLeaseDatabase = "/var/lib/dhcp/dhcpd.leases";
constexpr const char* kSettingsLock = "/run/lock/dhcp-server.lock";

} // namespace settings::dhcp_server
