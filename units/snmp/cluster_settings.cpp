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
            node = file.SelectFirst("/unit/agent/cluster/node[@address = '%s']", address.c_str());
        return node.SetAttr(attribute, "%s", value.c_str()) ||
               Fail(std::string("Failed to set ") + attribute + " for node " + address);
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
        return file.SelectFirst("%s", kCluster).SetAttr("v2_mode", "%s", value.c_str()) ||
               Fail("Failed to set mode");
    });
}

bool SetSystemCommunity(const std::string& community) {
    return SetAttr(kCluster, "system_community", community, kCommonUnit);
}

bool AddClusterNode(const ClusterNode& node) {
    return Edit(kCommonUnit, [&](File& file) {
        return file.SelectFirst("%s", kCluster)
                   .AddChild("node")
                   .NewAttr("address", "%s", node.address.c_str())
                   .NewAttr("context", "%s", node.context.c_str())
                   .NewAttr("community", "%s", node.community.c_str()) ||
               Fail("Failed to add node " + node.address);
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
            return Fail("Failed to erase cluster contexts and communities");
    }
    return SaveSettings(file);
}

} // namespace snmp
