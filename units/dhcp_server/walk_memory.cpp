#include "units/dhcp_server/walk_memory.h"

#include "platform/path_list.h"
#include "units/dhcp_server/model/area.h"

namespace settings::dhcp_server {
namespace {

// A longer name may be cut in an area's expression, so what that finds can't be told without it.
constexpr std::size_t kMaximumName = 1024;

bool IsWholeInExpressions(const std::string& name) {
    return name.size() <= kMaximumName && IsLiteral(name);
}

} // namespace

const corvanshell::CConfStruct& WalkMemory::NetworkRecord() {
    if (!record_)
        record_.emplace(path_list::local_settings, true);
    return *record_;
}

bool WalkMemory::HasLocalSubnet(const std::string& interface) {
    ReadLocalSubnets();
    if (local_subnets_are_plain_ && IsWholeInExpressions(interface))
        return local_subnets_->contains(interface);
    return static_cast<bool>(SelectIn(LocalSubnet(interface), file_));
}

bool WalkMemory::IsOnlyLocalSubnet(const std::string& interface, Node subnet) {
    ReadLocalSubnets();
    const auto found = local_subnets_->find(interface);
    return local_subnets_are_plain_ && IsWholeInExpressions(interface) && found != local_subnets_->end() &&
           found->second == subnet;
}

bool WalkMemory::IsOnlyRemoteSubnet(const std::string& address, const std::string& netmask,
                                    Node subnet) const {
    const NodeSet found = SelectIn(RemoteSubnet(address, netmask), file_);
    return found.Size() == 1 && found.At(0) == subnet;
}

bool WalkMemory::IsOnlyHost(const std::string& name, Node host) {
    ReadHosts();
    const auto found = hosts_->find(name);
    return IsWholeInExpressions(name) && found != hosts_->end() && found->second == host;
}

void WalkMemory::AddTo(Index& index, const std::string& name, Node node) {
    const auto [entry, is_new] = index.try_emplace(name, node);
    if (!is_new && entry->second != node)
        entry->second = Node();
}

void WalkMemory::ReadHosts() {
    if (hosts_)
        return;
    hosts_.emplace();
    const NodeSet hosts = file_.Select("/unit/subnet/host[@name]");
    hosts_->reserve(hosts.Size());
    for (std::size_t i = 0; i < hosts.Size(); ++i)
        AddTo(*hosts_, hosts.At(i).GetAttr("name"), hosts.At(i));
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
    local_subnets_are_plain_ = plain.Size() == interfaces.Size();
    for (std::size_t i = 0; i < interfaces.Size(); ++i)
        AddTo(*local_subnets_, interfaces.At(i).GetText(), interfaces.At(i).Parent());
}

} // namespace settings::dhcp_server
