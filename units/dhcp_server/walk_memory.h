#pragma once

#include "records/conf_struct.h"
#include "settings/file.h"
#include "settings/node.h"
#include "units/dhcp_relay/rules/interface_index.h"
#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/model/level.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace settings::dhcp_server {

// The levels of one kind of area by name. Names that several nodes have are few, and have one level each.
class LevelIndex {
public:
    void Reserve(std::size_t size) { single_.reserve(size); }
    // Nodes come in document order; one that comes twice in a row counts once.
    void Add(const std::string& name, Node node);
    // The names are not what the expressions compare, which then have to be asked.
    void Distrust() { is_plain_ = false; }

    // The one node that an area of that name finds; null when there is none or several, or only its
    // expression can tell.
    Node Single(const std::string& name) const;
    // The level of any other name.
    std::shared_ptr<Level> Shared(const Area& area, const File& file, const std::string& name);

private:
    std::unordered_map<std::string, Node> single_; // a null node for a name that is repeated
    std::map<std::string, std::vector<Node>> repeated_;
    std::map<std::string, std::shared_ptr<Level>> levels_;
    bool is_plain_ = true;
};

// What one walk over the settings reads once: the records that it asks, and which nodes each name stands for,
// so that no rule has to search the document for a place again. The document must not change.
class WalkMemory {
public:
    explicit WalkMemory(const File& file) : file_(file) {}

    const corvanshell::CConfStruct& NetworkRecord();
    const dhcp_relay::InterfaceIndex& Relays();

    bool HasLocalSubnet(const std::string& interface);
    // What the area finds; a host that stands in `subnet` shares what is known of that.
    std::shared_ptr<Level> LevelOf(const LocalSubnet& area);
    std::shared_ptr<Level> LevelOf(const RemoteSubnet& area);
    std::shared_ptr<Level> LevelOf(const Host& area, const Level& subnet);

    // Whether the walk meets this text for the second time.
    bool IsSecond(const std::string& text) { return ++met_[text] == 2; }

private:
    std::shared_ptr<Level> Find(LevelIndex& index, const Area& area, const std::string& name) const;
    void ReadHosts();
    void ReadLocalSubnets();
    void ReadRemoteSubnets();

    const File& file_;
    std::optional<corvanshell::CConfStruct> record_;
    std::optional<dhcp_relay::InterfaceIndex> relays_;
    std::optional<LevelIndex> hosts_;
    std::optional<LevelIndex> local_subnets_;
    std::optional<LevelIndex> remote_subnets_;
    std::map<std::string, int> met_;
};

} // namespace settings::dhcp_server
