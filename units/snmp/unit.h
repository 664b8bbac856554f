#pragma once

struct _xmlURI;

// The host part of the unit's URI, the name in its settings file and the base name of that file.
inline constexpr const char* kSnmpAgentUnit = "corvansnmp_agent";

// The handler of unit://corvansnmp_agent. Without a query it writes the daemon's files; the one query is
// "convert-daemon-settings=<path>". Only the first pair of a query counts. Every failure is reported.
[[nodiscard]] bool SnmpAgentUnit(const _xmlURI* uri);
