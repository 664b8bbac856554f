#pragma once

struct _xmlURI;

// The handler of unit://corvansnmp_agent. Without a query it writes the daemon's files; the one query is
// "convert-daemon-settings=<path>". Only the first pair of a query counts. Every failure is reported.
[[nodiscard]] bool SnmpAgentUnit(const _xmlURI* uri);
