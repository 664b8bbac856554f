#pragma once

#include <string>

// The kernel driver of L2OverIP. Its state stands in /proc/driver/l2overip/config, and the script l2overip.sh
// drives it.

// Whether the appliance's restrictions let it have L2OverIP at all.
[[nodiscard]] bool L2OverIpEnabled();

// Whether the driver is in switch mode. On the passive node of a cluster it counts as not configured.
[[nodiscard]] bool L2OverIpDriverConfigured();

// Runs the script with "configure" or another command of its own, and gives its exit status, -1 when it can't
// be started. The command goes into a shell line as it is.
int L2OverIpScript(const std::string& command);

// Has the driver read the configuration file anew. A failure is reported.
[[nodiscard]] bool L2OverIpReconfigure();
