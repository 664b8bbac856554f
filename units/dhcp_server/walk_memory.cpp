#include "units/dhcp_server/walk_memory.h"

#include "platform/path_list.h"

namespace settings::dhcp_server {
namespace {

// A longer name may be cut in an area's expression, so what that finds can't be told without it.
constexpr std::size_t kMaximumName = 1024;

bool IsWholeInExpressions(const std::string& name) {
    return name.size() <= kMaximumName && IsLiteral(name);
}

// Two different pairs have two names, whatever stands in them.
std::string PairName(const std::string& address, const std::string& netmask) {
    return std::to_string(address.size()) + " " + address + netmask;
}

} // namespace

void LevelIndex::Add(const std::string& name, Node node) {
    const auto [entry, is_new] = single_.try_emplace(name, node);
    if (is_new || entry->second == node)
        return;
    std::vector<Node>& nodes = repeated_[name];
    if (nodes.empty())
        nodes.push_back(entry->second);
    entry->second = Node();
    if (nodes.back() != node)
        nodes.push_back(node);
}

Node LevelIndex::Single(const std::string& name) const {
    const auto found = single_.find(name);
    return is_plain_ && IsWholeInExpressions(name) && found != single_.end() ? found->second : Node();
}

std::shared_ptr<Level> LevelIndex::Shared(const Area& area, const File& file, const std::string& name) {
    std::shared_ptr<Level>& level = levels_[name];
    if (level != nullptr)
        return level;
    const auto found = repeated_.find(name);
    const bool is_known = is_plain_ && IsWholeInExpressions(name) && found != repeated_.end();
    level = is_known ? std::make_shared<Level>(file, found->second) : area.LevelIn(file);
    return level;
}

const corvanshell::CConfStruct& WalkMemory::NetworkRecord() {
    if (!record_)
        record_.emplace(path_list::local_settings, true);
    return *record_;
}

const dhcp_relay::InterfaceIndex& WalkMemory::Relays() {
    if (!relays_)
        relays_.emplace();
    return *relays_;
}

bool WalkMemory::HasLocalSubnet(const std::string& interface) {
    return !LevelOf(LocalSubnet(interface))->Nodes().empty();
}

std::shared_ptr<Level> WalkMemory::LevelOf(const LocalSubnet& area) {
    ReadLocalSubnets();
    return Find(*local_subnets_, area, area.Name());
}

std::shared_ptr<Level> WalkMemory::LevelOf(const RemoteSubnet& area) {
    ReadRemoteSubnets();
    return Find(*remote_subnets_, area, PairName(area.Address(), area.Netmask()));
}

std::shared_ptr<Level> WalkMemory::LevelOf(const Host& area, const Level& subnet) {
    ReadHosts();
    const Node node = hosts_->Single(area.Name());
    const std::vector<Node>& around = subnet.Subnet()->Nodes();
    if (node && around.size() == 1 && around.front() == node.Parent())
        return std::make_shared<Level>(file_, node, subnet.Subnet());
    return Find(*hosts_, area, area.Name());
}

std::shared_ptr<Level> WalkMemory::Find(LevelIndex& index, const Area& area, const std::string& name) const {
    const Node node = index.Single(name);
    return node ? std::make_shared<Level>(file_, std::vector<Node>{node}) : index.Shared(area, file_, name);
}

void WalkMemory::ReadHosts() {
    if (hosts_)
        return;
    hosts_.emplace();
    const NodeSet hosts = file_.Select("/unit/subnet/host[@name]");
    hosts_->Reserve(hosts.Size());
    for (std::size_t i = 0; i < hosts.Size(); ++i)
        hosts_->Add(hosts.At(i).GetAttr("name"), hosts.At(i));
}

void WalkMemory::ReadLocalSubnets() {
    if (local_subnets_)
        return;
    local_subnets_.emplace();
    const NodeSet interfaces =
        file_.Select("/unit/subnet[@address and @netmask]/interface[@type = 'listen']");
    // A name in one piece of text compares as a whole; one with a comment inside is left to XPath.
    const NodeSet plain = file_.Select("/unit/subnet[@address and @netmask]"
                                       "/interface[@type = 'listen' and text() and count(node()) = 1]");
    if (plain.Size() != interfaces.Size())
        local_subnets_->Distrust();
    for (std::size_t i = 0; i < interfaces.Size(); ++i)
        local_subnets_->Add(interfaces.At(i).GetText(), interfaces.At(i).Parent());
}

void WalkMemory::ReadRemoteSubnets() {
    if (remote_subnets_)
        return;
    remote_subnets_.emplace();
    const NodeSet subnets =
        file_.Select("/unit/subnet[@address and @netmask and child::interface[@type = 'relay']]");
    for (std::size_t i = 0; i < subnets.Size(); ++i)
        remote_subnets_->Add(PairName(subnets.At(i).GetAttr("address"), subnets.At(i).GetAttr("netmask")),
                             subnets.At(i));
}

} // namespace settings::dhcp_server
