#pragma once

#include "reference/failover/cluster_file.h"

#include <string>

namespace reference::failover {

enum class Role { kActive, kPassive, kAny };

constexpr const char* kRunFolder = "/run/failover";
constexpr const char* kEvents = "/run/failover/events"; // a FIFO: 'INSTANCE "cluster" MASTER 254'
constexpr const char* kAdvertsFile = "/etc/keepalived/keepalived.conf";
constexpr const char* kConnectionsFile = "/etc/conntrackd/conntrackd.conf";

// The settings of keepalived: one group of addresses, which goes to the node that the other one hears. A node
// that is started without a role takes it when nobody has it.
std::string AdvertsText(const Cluster& cluster, Role role);
// The settings of conntrackd: connections are told to the other node as they change.
std::string ConnectionsText(const Cluster& cluster, const std::string& own_address);

// Puts the whole text, safe on the disk, in the place of the file, making its folder.
[[nodiscard]] bool ReplaceFile(const std::string& path, const std::string& text);

} // namespace reference::failover
