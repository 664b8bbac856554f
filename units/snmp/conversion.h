#pragma once

#include <string>

namespace snmp {

// Takes over a settings file of the old format, <snmp><agent>...: log level, port, one community and one trap
// receiver, with reading and, given a receiver, traps by SNMPv2c switched on. `path` is that file,
// "" the one beside the settings, "vpn-snmpd.xml". All or
// nothing; a failure leaves the settings as they were.
[[nodiscard]] bool ConvertDaemonSettings(const std::string& path);

} // namespace snmp
