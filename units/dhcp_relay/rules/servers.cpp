#include "units/dhcp_relay/rules/servers.h"

#include "platform/console.h"
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
    const char* id; // the relay's
    const char* server_id;
    const char* server;
    const char* interface;
};

Node FindRole(const File& file, const char* id, const char* server_id) {
    if (!IsLiteral(id) || !IsLiteral(server_id))
        return {};
    return file.SelectFirst("/unit/dhcp-relay[@id = '%s']/server[@id = '%s' and @interface and text()]", id,
                            server_id);
}

bool IsOtherRoleApart(const File& file, const ServerEntry& entry) {
    const char* other_id =
        std::strcmp(entry.server_id, kExternalServer) == 0 ? kBackupServer : kExternalServer;
    const Node other = FindRole(file, entry.id, other_id);
    if (!other || other.GetText() != entry.server || other.GetAttr("interface") != entry.interface)
        return true;
    shell_print_error("DHCP relay %s: %s: DHCP server is already in use as %s interface", entry.id,
                      entry.server, ServerRole(other_id));
    return false;
}

bool IsServerOfNoOtherRelay(const File& file, const ServerEntry& entry) {
    const NodeSet users =
        file.Select("/unit/dhcp-relay[@id]/server[@id and @interface and text() = '%s']", entry.server);
    for (std::size_t i = 0; i < users.Size(); ++i) {
        const std::string relay = users.At(i).Parent().GetAttr("id");
        if (relay == entry.id)
            continue;
        shell_print_error(
            "DHCP relay %s: %s: DHCP server is already in use as %s interface within DHCP relay %s", entry.id,
            entry.server, ServerRole(users.At(i).GetAttr("id")), relay.c_str());
        return false;
    }
    return true;
}

bool IsInterfaceNotListening(const File& file, const ServerEntry& entry) {
    const char* role = ServerRole(entry.server_id);
    if (const Node used = FindListenInterface(file, entry.interface)) {
        shell_print_error("DHCP relay %s: %s: %s interface is already in use as listen interface within DHCP "
                          "relay %s",
                          entry.id, entry.interface, role, used.Parent().GetAttr("id").c_str());
        return false;
    }
    if (dhcp_server::IsDhcpServerListenInterface(entry.interface)) {
        shell_print_error("DHCP relay %s: %s: %s interface is already in use as listen interface within DHCP "
                          "server",
                          entry.id, entry.interface, role);
        return false;
    }
    return true;
}

void WarnIfUnresolved(const ServerEntry& entry) {
    if (gethostbyname(entry.server) == nullptr)
        shell_print_warning("DHCP relay %s: %s: failed to resolve domain name of %s DHCP server", entry.id,
                            entry.server, ServerRole(entry.server_id));
}

bool AlterServer(File& file, Node node, const ServerEntry& entry) {
    if (node.GetText() == entry.server && node.GetAttr("interface") == entry.interface)
        return file.Save();
    if (!node.SetText("%s", entry.server) || !node.SetAttr("interface", "%s", entry.interface) ||
        !file.Save())
        return false;
    shell_print_warning("DHCP relay %s: %s: %s DHCP server with interface %s has been altered", entry.id,
                        entry.server, ServerRole(entry.server_id), entry.interface);
    return true;
}

bool AddServer(File& file, const ServerEntry& entry) {
    Node node = FindOrCreateRelay(file, entry.id).AddChild("server", "%s", entry.server);
    return node.NewAttr("id", "%s", entry.server_id) && node.NewAttr("interface", "%s", entry.interface) &&
           file.Save();
}

bool RemoveFile(const std::string& path, const char* what) {
    if (unlink(path.c_str()) == 0 || errno == ENOENT)
        return true;
    shell_print_error("DHCP relay: %s: failed to remove %s file: %s", path.c_str(), what,
                      std::strerror(errno));
    return false;
}

bool IsServerNamed(const std::string& id, const std::string& server, const std::string& interface) {
    if (server.empty()) {
        shell_print_error("DHCP relay %s: DHCP server is unspecified", id.c_str());
        return false;
    }
    if (!corvanshell::is_valid_ip(server) && !corvanshell::is_valid_domain_name(server, false, false)) {
        shell_print_error(
            "DHCP relay %s: %s: DHCP server address in a format other than IP or DNS is unsupported",
            id.c_str(), server.c_str());
        return false;
    }
    if (interface.empty()) {
        shell_print_error("DHCP relay %s: external interface of DHCP server %s is unspecified", id.c_str(),
                          server.c_str());
        return false;
    }
    return true;
}

bool IsServerReachable(const corvanshell::CConfStruct& record, const std::string& id,
                       const std::string& server, const std::string& interface) {
    corvanshell::InterfaceEntry entry;
    if (!record.FindInterface(interface, entry)) {
        shell_print_error(
            "DHCP relay %s: %s: unconfigured external interface of DHCP server %s is unsupported", id.c_str(),
            interface.c_str(), server.c_str());
        return false;
    }
    if (entry.interface_class != "access") {
        shell_print_error("DHCP relay %s: %s: %s mode of external interface of DHCP server %s is unsupported",
                          id.c_str(), interface.c_str(), entry.interface_class.c_str(), server.c_str());
        return false;
    }
    if (entry.address.empty()) {
        shell_print_error("DHCP relay %s: %s: external interface of DHCP server %s without IP address is "
                          "unsupported",
                          id.c_str(), interface.c_str(), server.c_str());
        return false;
    }
    return true;
}

} // namespace

bool CheckRelayServer(const std::string& id, const std::string& server, const std::string& interface) {
    return IsServerNamed(id, server, interface) &&
           IsServerReachable(corvanshell::CConfStruct(path_list::local_settings, true), id, server,
                             interface);
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
    const ServerEntry entry = {id.c_str(), server_id.c_str(), server.c_str(), interface.c_str()};
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
            "/unit/dhcp-relay[@id = '%s']/server[@id = '%s' and @interface = '%s' and text() = '%s']",
            id.c_str(), server_id.c_str(), interface.c_str(), server.c_str());
    if (!node) {
        shell_print_error("DHCP relay %s: %s: %s DHCP server on interface %s is not in use", id.c_str(),
                          server.c_str(), ServerRole(server_id), interface.c_str());
        return false;
    }
    return RemoveFromRelay(node) && file.Save();
}

bool EraseRelay(const std::string& id) {
    File file(kDhcpRelayUnit, "");
    if (!IsChangePermitted(id) || !file.Load())
        return false;
    Node relay = FindRelay(file, id);
    if (!relay) {
        shell_print_error("DHCP relay %s: does not exist", id.c_str());
        return false;
    }
    if (file.Select("/unit/dhcp-relay[@id != '%s']", id.c_str()))
        return relay.Remove() && file.Save();
    return RemoveFile(GetFilePath(kDhcpRelayUnit), "settings") &&
           RemoveFile(kDaemonSettings, "daemon settings");
}

} // namespace settings::dhcp_relay
