#pragma once

#include "settings/file.h"

#include <string>

// The monitoring contexts: each node of a cluster has one, under which the active node is asked for it.

namespace snmp {

// `activeip` and `device` of the section `sendconfig` of the cluster file. A file that can't be parsed is
// logged and gives "".
std::string ReadFailoverActiveIp();
std::string ReadFailoverDevice();

// An interface's address or netmask. Logged, and "", when it has none.
std::string GetInterfaceAddress(const std::string& device);
std::string GetInterfaceNetmask(const std::string& device);

// Gives the two nodes their contexts and the cluster a new system community, in the settings file.
[[nodiscard]] bool GenerateClusterContexts();

// Brings the contexts in the settings file, which is loaded, in line with this node: the active one makes or
// renews them, and outside cluster mode they are erased. What fails is reported. Whether the file on disk may
// have changed.
[[nodiscard]] bool SettleClusterContexts(const settings::File& file);

} // namespace snmp
