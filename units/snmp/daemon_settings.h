#pragma once

namespace snmp {

// Writes the daemon's files from the settings, and keeps the cluster's monitoring contexts in order. What
// can't be had is reported and the rest is written; only an unwritable main file ends it. It fails with
// settings that can't be read, and with a value that no line can hold. Another file that can't be written, an
// unknown version or network, and contexts that can't be settled are no failure.
[[nodiscard]] bool WriteDaemonFiles();

} // namespace snmp
