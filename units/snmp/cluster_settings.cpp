#include "units/snmp/cluster_settings.h"

#include "units/snmp/settings_access.h"

namespace snmp {
namespace {

using settings::File;
using settings::Node;
using settings::NodeSet;

constexpr const char* kCluster = "/unit/agent/cluster";
constexpr const char* kNodes = "/unit/agent/cluster/node";

bool SetNodeAttr(const std::string& address, const char* attribute, const std::string& value) {
    return Edit(kCommonUnit, [&](File& file) {
        Node node;
        if (settings::IsLiteral(address))
            node = file.SelectFirst("/unit/agent/cluster/node[@address = '%s']", address);
        return node.SetAttr(attribute, value) || Refuse("Failed to set %s for node %s", attribute, address);
    });
}

} // namespace

ClusterSettings ReadClusterSettings() {
    return Read(kCommonUnit, [](const File& file) { return ReadClusterSettings(file); });
}

ClusterSettings ReadClusterSettings(const File& file) {
    const Node cluster = file.SelectFirst("%s", kCluster);
    ClusterSettings result{cluster.GetAttr("v2_mode") == "on", {}, cluster.GetAttr("system_community")};
    const NodeSet nodes = file.Select("%s", kNodes);
    for (std::size_t i = 0; i < nodes.Size(); ++i) {
        const Node node = nodes.At(i);
        result.nodes.push_back({node.GetAttr("address"), node.GetAttr("context"), node.GetAttr("community")});
    }
    return result;
}

bool SetClusterNodeContext(const std::string& address, const std::string& context) {
    return SetNodeAttr(address, "context", context);
}

bool SetClusterNodeCommunity(const std::string& address, const std::string& community) {
    return SetNodeAttr(address, "community", community);
}

bool SetClusterV2Mode(const std::string& value) {
    return Edit(kCommonUnit, [&](File& file) {
        return file.SelectFirst("%s", kCluster).SetAttr("v2_mode", value) || Refuse("Failed to set mode");
    });
}

bool SetSystemCommunity(const std::string& community) {
    return SetAttr(kCluster, "system_community", community, kCommonUnit);
}

bool AddClusterNode(const ClusterNode& node) {
    return Edit(kCommonUnit, [&](File& file) {
        return file.SelectFirst("%s", kCluster)
                   .AddChild("node")
                   .NewAttr("address", node.address)
                   .NewAttr("context", node.context)
                   .NewAttr("community", node.community) ||
               Refuse("Failed to add node %s", node.address);
    });
}

bool EraseClusterNodes() {
    SettingsFile file(kCommonUnit);
    if (!LoadSettings(file))
        return false;
    for (int i = 0; i < 2; ++i) {
        Node node = file.SelectFirst("%s", kNodes);
        if (!node)
            return true;
        if (!node.Remove())
            return Refuse("Failed to erase cluster contexts and communities");
    }
    return SaveSettings(file);
}

} // namespace snmp
