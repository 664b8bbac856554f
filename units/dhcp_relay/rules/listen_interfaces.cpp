#include "units/dhcp_relay/rules/listen_interfaces.h"

#include "platform/console.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_server/model/gates.h"

namespace settings::dhcp_relay {
namespace {

constexpr std::size_t kMaximumListenInterfaces = 32;

// The interface has no other role in the appliance.
bool CheckUnused(const File& file, const char* id, const std::string& interface) {
    if (const Node used = FindListenInterface(file, interface)) {
        shell_print_error(
            "DHCP relay %s: %s: interface is already in use as listen interface within DHCP relay "
            "%s",
            id, interface.c_str(), used.Parent().GetAttr("id").c_str());
        return false;
    }
    if (const Node server = FindServerInterface(file, interface)) {
        shell_print_error(
            "DHCP relay %s: %s: interface is already in use as %s interface within DHCP relay %s", id,
            interface.c_str(), ServerRole(server.GetAttr("id")), server.Parent().GetAttr("id").c_str());
        return false;
    }
    if (dhcp_server::IsDhcpServerListenInterface(interface)) {
        shell_print_error(
            "DHCP relay %s: %s: interface is already in use as listen interface within DHCP server", id,
            interface.c_str());
        return false;
    }
    return true;
}

bool CheckRoom(Node relay, const char* id) {
    std::size_t count = 0;
    for (Node child = relay.FirstChild(); child; child = child.NextSibling()) {
        if (child.IsNamed("interface") && child.GetAttr("type") == "listen")
            ++count;
    }
    if (count < kMaximumListenInterfaces)
        return true;
    shell_print_error(
        "DHCP relay %s: failed to add interface due to maximum number of listen interfaces: %zu", id,
        kMaximumListenInterfaces);
    return false;
}

} // namespace

bool CheckListenInterfaceUsable(const std::string& id, const std::string& interface) {
    return CheckListenInterfaceUsable(corvanshell::CConfStruct(path_list::local_settings, true), id,
                                      interface);
}

bool CheckListenInterfaceUsable(const corvanshell::CConfStruct& record, const std::string& id,
                                const std::string& interface) {
    corvanshell::InterfaceEntry entry;
    if (!record.FindInterface(interface, entry)) {
        shell_print_error("DHCP relay %s: %s: unconfigured listen interface is unsupported", id.c_str(),
                          interface.c_str());
        return false;
    }
    if (entry.interface_class != "access") {
        shell_print_error("DHCP relay %s: %s: %s mode of listen interface is unsupported", id.c_str(),
                          interface.c_str(), entry.interface_class.c_str());
        return false;
    }
    if (entry.address.empty() || entry.address == "dhcp") {
        shell_print_error("DHCP relay %s: %s: listen interface without static IP address is unsupported",
                          id.c_str(), interface.c_str());
        return false;
    }
    return true;
}

bool AddRelayListenInterface(const std::string& id, const std::string& interface) {
    if (!IsChangePermitted(id))
        return false;
    if (interface.empty()) {
        shell_print_error("DHCP relay %s: listen interface is unspecified", id.c_str());
        return false;
    }
    File file(kDhcpRelayUnit, "");
    if (!CheckListenInterfaceUsable(id, interface) || !file.Load() ||
        !CheckUnused(file, id.c_str(), interface) || !CheckRoom(FindRelay(file, id), id.c_str()))
        return false;
    Node added = FindOrCreateRelay(file, id).AddChild("interface", "%s", interface.c_str());
    return added.NewAttr("type", "listen") && file.Save();
}

bool RemoveRelayListenInterface(const std::string& id, const std::string& interface) {
    File file(kDhcpRelayUnit, "");
    if (!IsChangePermitted(id) || !file.Load())
        return false;
    Node node;
    if (IsLiteral(id) && IsLiteral(interface))
        node = file.SelectFirst("/unit/dhcp-relay[@id = '%s']/interface[@type = 'listen' and text() = '%s']",
                                id.c_str(), interface.c_str());
    if (!node) {
        shell_print_error("DHCP relay %s: %s: listen interface is not in use", id.c_str(), interface.c_str());
        return false;
    }
    return RemoveFromRelay(node) && file.Save();
}

} // namespace settings::dhcp_relay
