#include "platform/network.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"
#include "settings/file.h"
#include "shell/values.h"
#include "units/content_filter/rules.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_server/model/gates.h"
#include "units/snmp/communities.h"
#include "units/snmp/users.h"

#include <set>

namespace shell {

// Those of the settings and those of the system, which may be apart.
ShellWords ListInterfaces() {
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    std::set<std::string> names;
    for (const auto& [name, entry] : record.Interfaces())
        names.insert(name);
    for (const std::string& name : corvanshell::get_int_list())
        names.insert(name);
    return {names.begin(), names.end()};
}

ShellWords ListDhcpHosts() {
    return settings::dhcp_server::ListHostNames();
}

ShellWords ListDhcpSubnets() {
    return settings::dhcp_server::ListRemoteSubnets();
}

ShellWords ListRelays() {
    settings::File file(kDhcpRelayUnit, "");
    if (!file.Load())
        return {};
    std::set<std::string> ids;
    const settings::NodeSet relays = file.Select("/unit/dhcp-relay");
    for (std::size_t i = 0; i < relays.Size(); ++i)
        ids.insert(relays.At(i).GetAttr("id"));
    return {ids.begin(), ids.end()};
}

ShellWords ListSnmpUsers() {
    return snmp::ListUserNames();
}

ShellWords ListSnmpCommunities() {
    return snmp::ListCommunities();
}

ShellWords ListFilterRules() {
    return settings::content_filter::ListRuleNames();
}

} // namespace shell
