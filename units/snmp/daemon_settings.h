#pragma once

namespace snmp {

// Writes the daemon's files from the settings, and keeps the cluster's monitoring contexts in order. What
// can't be had is reported and the rest is written; only an unwritable main file ends it. An unwritable
// environment file alone is no failure.
[[nodiscard]] bool WriteDaemonFiles();

} // namespace snmp
