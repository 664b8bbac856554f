#pragma once

// The appliance alone, or as one node of a cluster. A change of the mode is not rolled back, and the shell
// gets the commands of the new mode at once.

namespace failover {

// Leaves the cluster, and starts the services that were not allowed in it and are set to start.
[[nodiscard]] bool EnterSingleMode();

// Enters the cluster, when nothing runs or will start that has no place there, and stops what else may run of
// it. Both are asked first, unless standard input is no terminal.
[[nodiscard]] bool EnterClusterMode();

} // namespace failover
