#include "records/default_settings.h"

#include "platform/network.h"
#include "platform/path_list.h"
#include "records/address_checks.h"
#include "records/common_conf_struct.h"
#include "records/conf_struct.h"

namespace corvanshell {
namespace {

// An interface that nobody has configured yet asks for everything by DHCP.
void AddDhcpInterface(CConfStruct& record, const char* name) {
    InterfaceEntry entry;
    if (record.FindInterface(name, entry))
        return;
    entry = MakeInterfaceEntry();
    entry.address = entry.netmask = entry.broadcast = "dhcp";
    entry.dhcp_route = entry.dhcp_dns = entry.dhcp_ntp = true;
    record.AddInterface(name, entry, true);
}

} // namespace

bool GenerateDefaults() {
    CConfStruct network(path_list::local_settings, true);
    CommonConfStruct common;
    if (has_wifi_adapter())
        AddDhcpInterface(network, "wlan0");
    AddDhcpInterface(network, "cdc-modem0");
    CheckNetmasks(network);
    CheckBroadcasts(network);
    // Each reports its failure, and neither keeps the other from being written.
    static_cast<void>(network.Write());
    static_cast<void>(common.Write());
    return true;
}

} // namespace corvanshell
