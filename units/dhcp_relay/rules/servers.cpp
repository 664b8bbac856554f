#include "units/dhcp_relay/rules/servers.h"

#include "platform/messages.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_server/model/gates.h"

#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <unistd.h>

namespace settings::dhcp_relay {
namespace {

// One server as an operation names it.
struct ServerEntry {
    const std::string& id; // the relay's
    const std::string& server_id;
    const std::string& server;
    const std::string& interface;
};

Node FindRole(const File& file, const std::string& id, const std::string& server_id) {
    if (!IsLiteral(id) || !IsLiteral(server_id))
        return {};
    return file.SelectFirst("/unit/dhcp-relay[@id = '%s']/server[@id = '%s' and @interface and text()]", id,
                            server_id);
}

bool IsOtherRoleApart(const File& file, const ServerEntry& entry) {
    const char* other_id = entry.server_id == kExternalServer ? kBackupServer : kExternalServer;
    const Node other = FindRole(file, entry.id, other_id);
    return !other || other.GetText() != entry.server || other.GetAttr("interface") != entry.interface ||
           Refuse("DHCP relay %s: %s: DHCP server is already in use as %s interface", entry.id, entry.server,
                  ServerRole(other_id));
}

bool IsServerOfNoOtherRelay(const File& file, const ServerEntry& entry) {
    const NodeSet users =
        file.Select("/unit/dhcp-relay[@id]/server[@id and @interface and text() = '%s']", entry.server);
    for (std::size_t i = 0; i < users.Size(); ++i) {
        const std::string relay = users.At(i).Parent().GetAttr("id");
        if (relay != entry.id)
            return Refuse(
                "DHCP relay %s: %s: DHCP server is already in use as %s interface within DHCP relay %s",
                entry.id, entry.server, ServerRole(users.At(i).GetAttr("id")), relay);
    }
    return true;
}

bool IsInterfaceNotListening(const File& file, const ServerEntry& entry) {
    const char* role = ServerRole(entry.server_id);
    if (const Node used = FindListenInterface(file, entry.interface))
        return Refuse("DHCP relay %s: %s: %s interface is already in use as listen interface within DHCP "
                      "relay %s",
                      entry.id, entry.interface, role, used.Parent().GetAttr("id"));
    return !dhcp_server::IsDhcpServerListenInterface(entry.interface) ||
           Refuse("DHCP relay %s: %s: %s interface is already in use as listen interface within DHCP server",
                  entry.id, entry.interface, role);
}

void WarnIfUnresolved(const ServerEntry& entry) {
    if (gethostbyname(entry.server.c_str()) == nullptr)
        PrintWarning("DHCP relay %s: %s: failed to resolve domain name of %s DHCP server", entry.id,
                     entry.server, ServerRole(entry.server_id));
}

bool AlterServer(File& file, Node node, const ServerEntry& entry) {
    if (node.GetText() == entry.server && node.GetAttr("interface") == entry.interface)
        return file.Save();
    if (!node.SetText(entry.server) || !node.SetAttr("interface", entry.interface) || !file.Save())
        return false;
    PrintWarning("DHCP relay %s: %s: %s DHCP server with interface %s has been altered", entry.id,
                 entry.server, ServerRole(entry.server_id), entry.interface);
    return true;
}

bool AddServer(File& file, const ServerEntry& entry) {
    Node node = FindOrCreateRelay(file, entry.id).AddChild("server", entry.server);
    return node.NewAttr("id", entry.server_id) && node.NewAttr("interface", entry.interface) && file.Save();
}

bool RemoveFile(const std::string& path, const char* what) {
    return unlink(path.c_str()) == 0 || errno == ENOENT ||
           Refuse("DHCP relay: %s: failed to remove %s file: %s", path, what, std::strerror(errno));
}

bool IsServerNamed(const std::string& id, const std::string& server, const std::string& interface) {
    if (server.empty())
        return Refuse("DHCP relay %s: DHCP server is unspecified", id);
    if (!corvanshell::is_valid_ip(server) && !corvanshell::is_valid_domain_name(server, false, false))
        return Refuse(
            "DHCP relay %s: %s: DHCP server address in a format other than IP or DNS is unsupported", id,
            server);
    return !interface.empty() ||
           Refuse("DHCP relay %s: external interface of DHCP server %s is unspecified", id, server);
}

bool IsServerReachable(const corvanshell::CConfStruct& record, const std::string& id,
                       const std::string& server, const std::string& interface) {
    corvanshell::InterfaceEntry entry;
    if (!record.FindInterface(interface, entry))
        return Refuse("DHCP relay %s: %s: unconfigured external interface of DHCP server %s is unsupported",
                      id, interface, server);
    if (entry.interface_class != "access")
        return Refuse("DHCP relay %s: %s: %s mode of external interface of DHCP server %s is unsupported", id,
                      interface, entry.interface_class, server);
    return !entry.address.empty() ||
           Refuse("DHCP relay %s: %s: external interface of DHCP server %s without IP address is unsupported",
                  id, interface, server);
}

} // namespace

bool CheckRelayServer(const std::string& id, const std::string& server, const std::string& interface) {
    if (!IsServerNamed(id, server, interface))
        return false;
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    return record.CheckRead() && IsServerReachable(record, id, server, interface);
}

bool CheckRelayServer(const corvanshell::CConfStruct& record, const std::string& id,
                      const std::string& server, const std::string& interface) {
    return IsServerNamed(id, server, interface) && IsServerReachable(record, id, server, interface);
}

bool AddRelayServer(const std::string& id, const std::string& server_id, const std::string& server,
                    const std::string& interface) {
    File file(kDhcpRelayUnit, "");
    if (!IsChangePermitted(id) || !CheckRelayServer(id, server, interface) || !file.Load())
        return false;
    const ServerEntry entry = {id, server_id, server, interface};
    if (!IsOtherRoleApart(file, entry) || !IsServerOfNoOtherRelay(file, entry) ||
        !IsInterfaceNotListening(file, entry))
        return false;
    WarnIfUnresolved(entry);
    const Node known = FindRole(file, entry.id, entry.server_id);
    return known ? AlterServer(file, known, entry) : AddServer(file, entry);
}

bool RemoveRelayServer(const std::string& id, const std::string& server_id, const std::string& server,
                       const std::string& interface) {
    File file(kDhcpRelayUnit, "");
    if (!IsChangePermitted(id) || !file.Load())
        return false;
    Node node;
    if (IsLiteral(id) && IsLiteral(server_id) && IsLiteral(server) && IsLiteral(interface))
        node = file.SelectFirst(
            "/unit/dhcp-relay[@id = '%s']/server[@id = '%s' and @interface = '%s' and text() = '%s']", id,
            server_id, interface, server);
    if (!node)
        return Refuse("DHCP relay %s: %s: %s DHCP server on interface %s is not in use", id, server,
                      ServerRole(server_id), interface);
    return RemoveFromRelay(node) && file.Save();
}

bool EraseRelay(const std::string& id) {
    File file(kDhcpRelayUnit, "");
    if (!IsChangePermitted(id) || !file.Load())
        return false;
    Node relay = FindRelay(file, id);
    if (!relay)
        return Refuse("DHCP relay %s: does not exist", id);
    if (file.Select("/unit/dhcp-relay[@id != '%s']", id))
        return relay.Remove() && file.Save();
    return RemoveFile(GetFilePath(kDhcpRelayUnit), "settings") &&
           RemoveFile(kDaemonSettings, "daemon settings");
}

} // namespace settings::dhcp_relay
