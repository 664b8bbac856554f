#pragma once

#include "shell/command.h"

#include <span>

// The tables of commands, one for each family.

namespace shell {

struct Family {
    const char* name;
    std::span<const Command> commands;
};

std::span<const Command> InterfaceCommands();
std::span<const Command> BondingCommands();
std::span<const Command> RoutingCommands();
std::span<const Command> PolicyCommands();
std::span<const Command> DgdCommands();
std::span<const Command> FailoverCommands();
std::span<const Command> L2OverIpCommands();
std::span<const Command> DhcpServerCommands();
std::span<const Command> DhcpRelayCommands();
std::span<const Command> SnmpCommands();
std::span<const Command> ContentFilterCommands();
std::span<const Command> WebCommands();
std::span<const Command> ShellCommands();

// All of them, in the order of help.
std::span<const Family> Families();

} // namespace shell
