#pragma once

#include <string>

// What this node knows of its cluster.

// Whether the cluster state file says that this node is the active one. A state that can't be read is
// logged and means no.
[[nodiscard]] bool IsClusterActive();

// 1 in cluster mode, 0 otherwise.
int GetClusterMode();

// True on the passive node of a cluster. Unless `feature` is empty, says on the terminal that it is disabled.
[[nodiscard]] bool IsDisabledOnPassiveNode(const std::string& feature);

// Whether /etc/failover.ini turns the synchronisation of date and time off.
[[nodiscard]] bool IsTimeSyncDisabled();
