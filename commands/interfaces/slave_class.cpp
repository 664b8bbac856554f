#include "commands/interfaces/slave_class.h"

#include "commands/interfaces/command_frame.h"
#include "commands/interfaces/roles.h"
#include "commands/interfaces/users.h"
#include "commands/l2overip/configuration.h"
#include "platform/messages.h"
#include "platform/network.h"
#include "platform/processes.h"

namespace interfaces {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

// The first question to the server is without the class; MayBecomeSlave puts the other.
bool CheckUsers(const InterfaceEdit& edit) {
    const char* const user =
        FindRefusingUser(edit.record, edit.Name(), {}, {.new_class = corvanshell::kSlaveClass});
    return user == nullptr ||
           Refuse("<I_IFCLASS_SLAVE>  Command: inet ifconfig %s class slave: DHCP %s uses the interface. "
                  "Command ignored",
                  edit.Name(), user);
}

bool MayBecomeSlave(const InterfaceEdit& edit) {
    const std::string& name = edit.Name();
    if (IsBond(name, edit.entry))
        return Refuse("%s: bond interface cannot be enslaved", name);
    if (!edit.entry.vlan.empty())
        return Refuse("%s: VLAN interface cannot be enslaved", name);
    if (IsL2OverIpSwitchOn(name))
        return Refuse("%s: interface configured as switch for L2OverIP", name);
    if (!CheckDhcpServer(edit.record, name, {.new_class = corvanshell::kSlaveClass}))
        return Refuse(
            "Command: inet ifconfig %s class slave: DHCP server uses the interface. Command ignored", name);
    return shell_spawn("/sbin/ifclass_check.sh", name.c_str(), "slave", nullptr) == 0 ||
           Refuse("%s: interface cannot be enslaved", name);
}

// The step of ClearInterfaceForBonding that runs programs.
bool FlushAddresses(const std::string& name, const InterfaceEntry& entry) {
    int status = 0;
    if (IsDhcpConfigured(entry))
        status = shell_spawn("/sbin/dhcpclient.sh", "stop", name.c_str(), nullptr);
    if (status == 0)
        status = shell_spawn("/sbin/ip", "address", "flush", "dev", name.c_str(), nullptr);
    return status == 0 || Refuse("%s: failed to flush interface with error: %d", name, status);
}

} // namespace

bool ClearInterfaceForBonding(const CConfStruct& record, const std::string& name, InterfaceEntry& entry) {
    if (entry.interface_class == corvanshell::kTrunkClass && !ListVlanChildren(record, name).empty())
        return Refuse("%s: trunk interface has VLAN children interfaces", name);
    if (HasAddress(entry) &&
        shell_get_user_confirmation(
            "All IP addresses and their aliases on %s interface will be removed. Continue?", name.c_str()) ==
            0) {
        PrintWarning("command was terminated by user");
        return false;
    }
    if (!FlushAddresses(name, entry))
        return false;
    if (!corvanshell::set_interface_mtu(name, corvanshell::default_mtu))
        return Refuse("%s: failed to reset MTU to: %d", name, corvanshell::default_mtu);
    entry.mtu = "auto";
    ClearAddresses(entry);
    return true;
}

bool SetSlaveClass(const std::string& name) {
    LogInfo("command: inet ifconfig %s class slave", name);
    InterfaceEdit edit(name);
    if (!IsNameUsable(name) || !edit.record.CheckRead() || !CheckUsers(edit) || !edit.Load() ||
        !MayBecomeSlave(edit) || !ClearInterfaceForBonding(edit.record, name, edit.entry))
        return false;
    edit.entry.interface_class = corvanshell::kSlaveClass;
    if (!edit.Save())
        return false;
    PrintInfo("%s set to slave class.", name);
    return true;
}

} // namespace interfaces
