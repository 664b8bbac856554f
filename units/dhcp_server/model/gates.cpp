#include "units/dhcp_server/model/gates.h"

#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/model/paths.h"

#include <set>

namespace settings::dhcp_server {

bool IsChangePermitted() {
    if (IsDisabledOnPassiveNode("DHCP server management"))
        return false;
    return !IsDhcpServerRunning() ||
           Refuse("DHCP server: prohibited to change configuration while daemon is running");
}

bool OpenForChange(File& file) {
    return IsChangePermitted() && file.Load();
}

bool IsDhcpServerRunning() {
    const pid_t pid = read_pid("dhcp-server", true);
    return pid > 0 && check_pid(pid);
}

bool IsDhcpServerListenInterface(const std::string& name) {
    File file(kDhcpServerUnit, "");
    return file.Load() && static_cast<bool>(SelectIn(LocalSubnet(name), file));
}

std::vector<std::string> CollectValues(const char* path) {
    File file(kDhcpServerUnit, "");
    return file.Load() ? CollectValues(file, path) : std::vector<std::string>();
}

std::vector<std::string> CollectValues(const File& file, const char* path) {
    const NodeSet nodes = SelectIn(Area(), file, "%s", path);
    std::set<std::string> values;
    for (std::size_t i = 0; i < nodes.Size(); ++i)
        values.insert(nodes.At(i).GetText());
    return {values.begin(), values.end()};
}

std::vector<std::string> ListInterfaces() {
    return CollectValues("child::subnet/interface");
}

std::vector<std::string> ListListenInterfaces() {
    return CollectValues("child::subnet/interface[@type = 'listen']");
}

std::vector<std::string> ListRelayInterfaces() {
    return CollectValues("child::subnet/interface[@type = 'relay']");
}

std::vector<std::string> ListRemoteSubnets() {
    return CollectValues(
        "child::subnet[@address and @netmask and child::interface[@type = 'relay']]/@address");
}

std::vector<std::string> ListHostNames() {
    return CollectValues("child::subnet/host[@name]/@name");
}

std::vector<std::string> ListHostMacs() {
    return CollectValues("child::subnet/host/hardware[@type and @mac]/@mac");
}

std::vector<std::string> ListHostAddresses() {
    return CollectValues("child::subnet/host/address");
}

} // namespace settings::dhcp_server
