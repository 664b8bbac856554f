#include "reference/shell/families.h"
#include "reference/shell/help.h"
#include "reference/shell/session.h"

namespace shell {
namespace {

constexpr Command kCommands[] = {
    {"help [<text>]", "shows all commands; with words of a line behind it, those that begin so",
     [](const std::string&) { return ShowHelp({}); }, kShows},
    {"exit", "leaves the shell", kCall<&EndSession>, kShows},
    {"quit", "leaves the shell", kCall<&EndSession>, kShows},
};

} // namespace

std::span<const Command> ShellCommands() {
    return kCommands;
}

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
