#pragma once

#include "settings/file.h"

#include <string>
#include <vector>

// Who may change the settings, who uses an interface, and what the settings hold for command-line completion.

namespace settings::dhcp_server {

// Refuses on a passive cluster node and while the daemon runs. Every refusal is reported.
[[nodiscard]] bool IsChangePermitted();

// The gate of every editing operation: the same, and then loads the file.
[[nodiscard]] bool OpenForChange(File& file);

bool IsDhcpServerRunning();

// Whether the server serves a subnet on the interface.
bool IsDhcpServerListenInterface(const std::string& name);

// The texts of what a path below the unit finds, each once, sorted by byte value. Empty when the file can't
// be loaded.
std::vector<std::string> CollectValues(const char* path);
// The same of a file that is loaded already.
std::vector<std::string> CollectValues(const File& file, const char* path);

std::vector<std::string> ListInterfaces();
std::vector<std::string> ListListenInterfaces();
std::vector<std::string> ListRelayInterfaces();
std::vector<std::string> ListRemoteSubnets(); // their addresses
std::vector<std::string> ListHostNames();
std::vector<std::string> ListHostMacs();
std::vector<std::string> ListHostAddresses();

} // namespace settings::dhcp_server
