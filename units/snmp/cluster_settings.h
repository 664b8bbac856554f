#pragma once

#include "settings/file.h"

#include <string>
#include <vector>

// What the two nodes of a cluster need to monitor each other.

namespace snmp {

struct ClusterNode {
    std::string address;
    std::string context;
    std::string community;

    bool operator==(const ClusterNode&) const = default;
};

struct ClusterSettings {
    bool v2_mode = false;
    std::vector<ClusterNode> nodes; // in document order; two are meant to be there
    std::string system_community;   // the nodes' own
};

ClusterSettings ReadClusterSettings();
ClusterSettings ReadClusterSettings(const settings::File& file);

[[nodiscard]] bool SetClusterNodeContext(const std::string& address, const std::string& context);
[[nodiscard]] bool SetClusterNodeCommunity(const std::string& address, const std::string& community);
[[nodiscard]] bool SetClusterV2Mode(const std::string& value);
[[nodiscard]] bool SetSystemCommunity(const std::string& community);
[[nodiscard]] bool AddClusterNode(const ClusterNode& node);

// Removes the first two nodes. Of a single node nothing is saved, so it stays, and of three one stays: kept,
// the section is meant to hold two.
[[nodiscard]] bool EraseClusterNodes();

} // namespace snmp
