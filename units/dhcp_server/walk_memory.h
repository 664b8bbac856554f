#pragma once

#include "records/conf_struct.h"
#include "settings/file.h"
#include "settings/node.h"

#include <optional>
#include <string>
#include <unordered_map>

namespace settings::dhcp_server {

// What one walk over the settings reads once. It knows which names stand for a single node, so that the walk,
// which holds the node, need not search the document for each name again. The document must not change.
class WalkMemory {
public:
    explicit WalkMemory(const File& file) : file_(file) {}

    const corvanshell::CConfStruct& NetworkRecord();

    bool HasLocalSubnet(const std::string& interface);
    // Whether the node is all that LocalSubnet, RemoteSubnet or Host of that name would find.
    bool IsOnlyLocalSubnet(const std::string& interface, Node subnet);
    bool IsOnlyRemoteSubnet(const std::string& address, const std::string& netmask, Node subnet) const;
    bool IsOnlyHost(const std::string& name, Node host);

private:
    // By name; a null node stands for a name that several nodes have.
    using Index = std::unordered_map<std::string, Node>;

    static void AddTo(Index& index, const std::string& name, Node node);
    void ReadHosts();
    void ReadLocalSubnets();

    const File& file_;
    std::optional<corvanshell::CConfStruct> record_;
    std::optional<Index> hosts_;
    std::optional<Index> local_subnets_;
    bool local_subnets_are_plain_ = false;
};

} // namespace settings::dhcp_server
