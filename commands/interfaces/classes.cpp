#include "commands/interfaces/classes.h"

#include "commands/interfaces/command_frame.h"
#include "commands/interfaces/roles.h"
#include "commands/interfaces/users.h"
#include "commands/l2overip/configuration.h"
#include "platform/messages.h"
#include "platform/processes.h"

#include <iostream>

namespace interfaces {
namespace {

// Runs /sbin/ifclass_check.sh eth1 trunk 2>&1 and reports what it has against the class; `prefix` is the
// family's word in messages.
bool CheckClass(const std::string& name, const char* new_class, const char* prefix) {
    std::string output;
    const std::string line = "/sbin/ifclass_check.sh " + name + " " + new_class + " 2>&1";
    return corvanshell::run(line.c_str(), output) == 0 ||
           Refuse("%s Command: inet ifconfig %s class %s: Check interface error: \n%s", prefix, name,
                  new_class, output);
}

bool CheckTrunkUsers(const InterfaceEdit& edit) {
    const char* const user =
        FindRefusingUser(edit.record, edit.Name(), {.new_class = corvanshell::kTrunkClass});
    return user == nullptr ||
           Refuse("<I_IFCLASS_TRUNK>  Command: inet ifconfig %s class trunk: DHCP %s uses the interface. "
                  "Command ignored",
                  edit.Name(), user);
}

// The log alone tells this one.
bool CheckNotSwitched(const std::string& name) {
    return !IsL2OverIpSwitchOn(name) ||
           RefuseInLog("<I_IFCLASS_TRUNK>  Command: inet ifconfig %s class trunk: L2OverIP configured as "
                       "switch for this interface.",
                       name);
}

// One step on the way to an interface without addresses.
bool Run(const std::string& line, const std::string& failure) {
    return RunLine(line) || WriteAndLog(std::cerr, "<I_IFCLASS_TRUNK>  ", failure);
}

bool DropAddresses(InterfaceEdit& edit) {
    const std::string& name = edit.Name();
    WriteLine("All IP addresses and their aliases on this interface will be removed.");
    if (shell_get_user_confirmation("Continue?") == 0) {
        WriteLine("Command terminated by user.");
        LogInfo("<I_IFCLASS_TRUNK> Command: inet ifconfig %s class trunk  - terminated by user.", name);
        return false;
    }
    if (IsDhcpConfigured(edit.entry))
        BaseExec::run("/sbin/dhcpclient.sh stop " + name);
    const bool up = edit.entry.up;
    if (up && !Run("/sbin/ifconfig " + name + " down", "Cannot do down of the interface " + name))
        return false;
    if (!Run("ip addr flush dev " + name, "Cannot to flush the address list of the interface " + name))
        return false;
    if (up && !Run("/sbin/ifconfig " + name + " up", "Cannot do up of the interface " + name))
        return false;
    ClearAddresses(edit.entry);
    return true;
}

} // namespace

bool SetAccessClass(const std::string& name) {
    InterfaceEdit edit(name);
    if (!IsNameUsable(name) || !edit.record.CheckRead() ||
        IsInterfaceRoleRefused(edit.record, name, kRefuseBoundSlave, true) ||
        !CheckClass(name, "access", "<I_IFCLASS_ACCESS>") || !edit.Load())
        return false;
    ClearAddresses(edit.entry);
    edit.entry.interface_class = corvanshell::kAccessClass;
    if (!edit.Save())
        return false;
    WriteLine(name + " set to access class.");
    LogInfo("<I_IFCLASS_ACCESS> Command: inet ifconfig %s class access", name);
    return true;
}

bool SetTrunkClass(const std::string& name) {
    LogInfo("command: inet ifconfig %s class trunk", name);
    InterfaceEdit edit(name);
    if (!IsNameUsable(name) || !edit.record.CheckRead() ||
        IsInterfaceRoleRefused(edit.record, name, kRefuseBoundSlave, true) || !CheckTrunkUsers(edit) ||
        !CheckClass(name, "trunk", "<I_IFCLASS_TRUNK>") || !CheckNotSwitched(name))
        return false;
    if (!edit.Load() || (HasAddress(edit.entry) && !DropAddresses(edit)))
        return false;
    edit.entry.interface_class = corvanshell::kTrunkClass;
    if (!edit.Save())
        return false;
    LogInfo("<I_IFCLASS_TRUNK> Command: inet ifconfig %s class trunk", name);
    WriteLine(name + " set to trunk class.");
    return true;
}

} // namespace interfaces
