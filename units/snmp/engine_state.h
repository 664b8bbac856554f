#pragma once

#include <map>
#include <string>

// The daemon's identity towards SNMPv3 managers. Its engine ID comes from a seed that is made once and kept
// for good; how often the engine has booted and what ID it had before, the daemon keeps in its persistent
// file.

namespace snmp {

inline constexpr const char* kPersistentFile = "/var/lib/snmp/snmpd.conf";
inline constexpr const char* kEngineSeedFile = "/mnt/main/var/lib/cvtk/snmp/engineid_seed";

// Digits and letters, no two alike, so 62 at most; a longer text that was asked for is logged.
std::string GenerateRandomString(std::size_t length);

// Makes the seed's folder if need be. Failures are reported.
[[nodiscard]] bool WriteEngineSeed(const std::string& seed);
[[nodiscard]] bool CreateEngineSeed();

// The first word of the seed file, "" when there is none, which is reported. A seed file that is not there is
// made first.
std::string ObtainEngineSeed();

// "engineBoots" and "oldEngineID" as far as the persistent file has them. A file that can't be opened is
// reported and has nothing.
std::map<std::string, std::string> ReadPersistentEngineState();
// "" when there is none.
std::string GetOldEngineId();

} // namespace snmp
