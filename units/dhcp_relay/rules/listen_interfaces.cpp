#include "units/dhcp_relay/rules/listen_interfaces.h"

#include "platform/messages.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_server/model/gates.h"

namespace settings::dhcp_relay {
namespace {

constexpr std::size_t kMaximumListenInterfaces = 32;

// The interface has no other role in the appliance.
bool CheckUnused(const File& file, const std::string& id, const std::string& interface) {
    if (const Node used = FindListenInterface(file, interface))
        return Refuse(
            "DHCP relay %s: %s: interface is already in use as listen interface within DHCP relay %s", id,
            interface, used.Parent().GetAttr("id"));
    if (const Node server = FindServerInterface(file, interface))
        return Refuse("DHCP relay %s: %s: interface is already in use as %s interface within DHCP relay %s",
                      id, interface, ServerRole(server.GetAttr("id")), server.Parent().GetAttr("id"));
    return !dhcp_server::IsDhcpServerListenInterface(interface) ||
           Refuse("DHCP relay %s: %s: interface is already in use as listen interface within DHCP server", id,
                  interface);
}

bool CheckRoom(Node relay, const std::string& id) {
    std::size_t count = 0;
    for (Node child = relay.FirstChild(); child; child = child.NextSibling()) {
        if (child.IsNamed("interface") && child.GetAttr("type") == "listen")
            ++count;
    }
    return count < kMaximumListenInterfaces ||
           Refuse("DHCP relay %s: failed to add interface due to maximum number of listen interfaces: %zu",
                  id, kMaximumListenInterfaces);
}

} // namespace

bool CheckListenInterfaceUsable(const std::string& id, const std::string& interface) {
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    return record.CheckRead() && CheckListenInterfaceUsable(record, id, interface);
}

bool CheckListenInterfaceUsable(const corvanshell::CConfStruct& record, const std::string& id,
                                const std::string& interface) {
    corvanshell::InterfaceEntry entry;
    if (!record.FindInterface(interface, entry))
        return Refuse("DHCP relay %s: %s: unconfigured listen interface is unsupported", id, interface);
    if (entry.interface_class != "access")
        return Refuse("DHCP relay %s: %s: %s mode of listen interface is unsupported", id, interface,
                      entry.interface_class);
    return (!entry.address.empty() && entry.address != "dhcp") ||
           Refuse("DHCP relay %s: %s: listen interface without static IP address is unsupported", id,
                  interface);
}

bool AddRelayListenInterface(const std::string& id, const std::string& interface) {
    if (!IsChangePermitted(id))
        return false;
    if (interface.empty())
        return Refuse("DHCP relay %s: listen interface is unspecified", id);
    File file(kDhcpRelayUnit, "");
    if (!CheckListenInterfaceUsable(id, interface) || !file.Load() || !CheckUnused(file, id, interface) ||
        !CheckRoom(FindRelay(file, id), id))
        return false;
    Node added = FindOrCreateRelay(file, id).AddChild("interface", interface);
    return added.NewAttr("type", "listen") && file.Save();
}

bool RemoveRelayListenInterface(const std::string& id, const std::string& interface) {
    File file(kDhcpRelayUnit, "");
    if (!IsChangePermitted(id) || !file.Load())
        return false;
    Node node;
    if (IsLiteral(id) && IsLiteral(interface))
        node = file.SelectFirst("/unit/dhcp-relay[@id = '%s']/interface[@type = 'listen' and text() = '%s']",
                                id, interface);
    if (!node)
        return Refuse("DHCP relay %s: %s: listen interface is not in use", id, interface);
    return RemoveFromRelay(node) && file.Save();
}

} // namespace settings::dhcp_relay
