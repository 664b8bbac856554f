#pragma once

#include <string>

// What the running machine is and runs.

[[nodiscard]] bool IsOldVsgMode();

// Whether a process of this executable runs. `exe` goes into a shell line as it is.
[[nodiscard]] bool IsServiceRunning(const std::string& exe);

// "Platform: <model> [<sub-model>]"
std::string GetPlatformLine();

// The first line that /sbin/version.sh prints for the option, given without its "-". "" on failure, which
// is reported.
std::string RunVersionScript(const std::string& option);

std::string GetPlatformName();
