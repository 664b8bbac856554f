#include "units/dhcp_relay/rules/interface_index.h"

#include "units/dhcp_relay/rules/lookup.h"

namespace settings::dhcp_relay {
namespace {

constexpr const char* kListenInterfaces = "/unit/dhcp-relay[@id]/interface[@type = 'listen' and text()]";
constexpr const char* kServers = "/unit/dhcp-relay[@id]/server[@id and @interface and text()]";

} // namespace

InterfaceIndex::InterfaceIndex() {
    File file(kDhcpRelayUnit, "");
    if (file.Load())
        Read(file);
}

// Of one interface's uses listening counts more than reaching a server, and the first one of a kind.
void InterfaceIndex::Read(const File& file) {
    const NodeSet listening = file.Select(kListenInterfaces);
    for (std::size_t i = 0; i < listening.Size(); ++i)
        relays_.emplace(listening.At(i).GetText(), listening.At(i).Parent().GetAttr("id"));
    const NodeSet servers = file.Select(kServers);
    for (std::size_t i = 0; i < servers.Size(); ++i)
        relays_.emplace(servers.At(i).GetAttr("interface"), servers.At(i).Parent().GetAttr("id"));
}

std::string InterfaceIndex::Find(const std::string& interface) const {
    const auto found = relays_.find(interface);
    return found != relays_.end() ? found->second : "";
}

} // namespace settings::dhcp_relay
