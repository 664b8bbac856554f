#pragma once

// The failover daemon, and the peer router's settings.

namespace failover {

enum class StartForm { kPlain, kActive, kPassive };

// Refused when the cluster's addresses are not valid, another critical operation runs, or /sbin/failover is
// missing. What that makes of it is for itself to tell.
[[nodiscard]] bool Start(StartForm form);
[[nodiscard]] bool Stop();

enum class RouterAction { kShowConfig, kIp, kUser, kActiveConfig, kPassiveConfig };

// Logs that the command was given: the rest of the work is the shell's.
void LogRouterAction(RouterAction action);

} // namespace failover
