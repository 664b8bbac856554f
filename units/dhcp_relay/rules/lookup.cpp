#include "units/dhcp_relay/rules/lookup.h"

#include "platform/messages.h"
#include "platform/processes.h"

#include <initializer_list>
#include <set>

namespace settings::dhcp_relay {
namespace {

constexpr const char* kListenInterfaces = "/unit/dhcp-relay[@id]/interface[@type = 'listen' and text()]";
constexpr const char* kServerInterfaces =
    "/unit/dhcp-relay[@id]/server[@id and @interface and text()]/@interface";

// The use of the interface that counts: listening more than reaching a server.
Node FindUse(const File& file, const std::string& name) {
    const Node listening = FindListenInterface(file, name);
    return listening ? listening : FindServerInterface(file, name);
}

std::string GetRelayServer(const std::string& id, const char* server_id, const std::string& interface) {
    File file(kDhcpRelayUnit, "");
    if (!IsLiteral(id) || !IsLiteral(interface) || !file.Load())
        return "";
    return file.GetText("/unit/dhcp-relay[@id = '%s']/server[@id = '%s' and @interface = '%s' and text()]",
                        id, server_id, interface);
}

std::vector<std::string> ListTexts(std::initializer_list<const char*> paths) {
    File file(kDhcpRelayUnit, "");
    if (!file.Load())
        return {};
    std::set<std::string> texts;
    for (const char* path : paths) {
        const NodeSet nodes = file.Select("%s", path);
        for (std::size_t i = 0; i < nodes.Size(); ++i)
            texts.insert(nodes.At(i).GetText());
    }
    return {texts.begin(), texts.end()};
}

} // namespace

const char* ServerRole(const std::string& server_id) {
    return server_id == kExternalServer ? "external" : "backup";
}

bool IsDhcpRelayRunning(const std::string& id) {
    const pid_t pid = read_pid((std::string(kDhcpRelayUnit) + "-" + id).c_str(), true);
    return pid > 0 && check_pid(pid);
}

bool IsChangePermitted(const std::string& id) {
    return !IsDhcpRelayRunning(id) ||
           Refuse("DHCP relay %s: prohibited to change configuration while daemon is running", id);
}

std::string FindRelayByInterface(const std::string& name) {
    File file(kDhcpRelayUnit, "");
    return file.Load() ? FindRelayByInterface(file, name) : "";
}

std::string FindRelayByInterface(const File& file, const std::string& name) {
    return FindUse(file, name).Parent().GetAttr("id");
}

bool IsRelayInterface(const File& file, const std::string& name) {
    return static_cast<bool>(FindUse(file, name));
}

std::string GetRelayExternalServer(const std::string& id, const std::string& interface) {
    return GetRelayServer(id, kExternalServer, interface);
}

std::string GetRelayBackupServer(const std::string& id, const std::string& interface) {
    return GetRelayServer(id, kBackupServer, interface);
}

std::vector<std::string> ListRelayInterfaces() {
    return ListTexts({kListenInterfaces, kServerInterfaces});
}

std::vector<std::string> ListRelayListenInterfaces() {
    return ListTexts({kListenInterfaces});
}

std::vector<std::string> ListRelayExternalInterfaces() {
    return ListTexts({kServerInterfaces});
}

Node FindListenInterface(const File& file, const std::string& interface) {
    if (!IsLiteral(interface))
        return {};
    return file.SelectFirst("/unit/dhcp-relay[@id]/interface[@type = 'listen' and text() = '%s']", interface);
}

Node FindServerInterface(const File& file, const std::string& interface) {
    if (!IsLiteral(interface))
        return {};
    return file.SelectFirst("/unit/dhcp-relay[@id]/server[@id and @interface = '%s' and text()]", interface);
}

Node FindRelay(const File& file, const std::string& id) {
    return IsLiteral(id) ? file.SelectFirst("/unit/dhcp-relay[@id = '%s']", id) : Node();
}

Node FindOrCreateRelay(const File& file, const std::string& id) {
    if (const Node found = FindRelay(file, id))
        return found;
    // Nothing could find such a relay again.
    if (!IsLiteral(id)) {
        PrintError("DHCP relay %s: ID with a quote is unsupported", id);
        return {};
    }
    return file.Root().AddChild("dhcp-relay").NewAttr("id", id);
}

bool RemoveFromRelay(Node node) {
    Node relay = node.Parent();
    return node.Remove() && (relay.FirstChild() || relay.Remove());
}

} // namespace settings::dhcp_relay
