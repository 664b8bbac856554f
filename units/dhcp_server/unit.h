#pragma once

struct _xmlURI;

// The handler of unit://dhcp-server. Without a query it writes the daemon's files; the queries are "check",
// "update=<interface>", "required=<interface>", "print", "dump" and "convert-udhcpd-settings=<path>". Only
// the first pair of a query counts. Every failure but that of "required" is reported.
[[nodiscard]] bool DhcpServerUnit(const _xmlURI* uri);
