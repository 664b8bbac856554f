#include "shell/families.h"

namespace shell {

std::span<const Family> Families() {
    static const Family families[] = {
        {"Interfaces", InterfaceCommands()},
        {"Bonds", BondingCommands()},
        {"Static routes", RoutingCommands()},
        {"Policies", PolicyCommands()},
        {"Dead gateway detection", DgdCommands()},
        {"Failover", FailoverCommands()},
        {"L2OverIP", L2OverIpCommands()},
        {"DHCP server", DhcpServerCommands()},
        {"DHCP relay", DhcpRelayCommands()},
        {"SNMP agent", SnmpCommands()},
        {"Content filter", ContentFilterCommands()},
        {"Web interface", WebCommands()},
        {"The shell itself", ShellCommands()},
    };
    return families;
}

} // namespace shell
