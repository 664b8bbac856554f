#include "commands/interfaces/classes.h"

#include "commands/interfaces/command_frame.h"
#include "commands/interfaces/roles.h"
#include "commands/l2overip/configuration.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/processes.h"

namespace interfaces {
namespace {

// Runs /sbin/ifclass_check.sh eth1 trunk 2>&1 and reports what it has against the class; `prefix` is the
// family's word in messages.
bool CheckClass(const std::string& name, const char* new_class, const char* prefix) {
    std::string output;
    const std::string line = "/sbin/ifclass_check.sh " + name + " " + new_class + " 2>&1";
    if (corvanshell::run(line.c_str(), output) == 0)
        return true;
    shell_print_error("%s Command: inet ifconfig %s class %s: Check interface error: \n%s", prefix,
                      name.c_str(), new_class, output.c_str());
    return false;
}

bool CheckTrunkUsers(const std::string& name) {
    const Change change = {.new_class = corvanshell::kTrunkClass};
    const char* user = nullptr;
    if (!CheckDhcpServer(name, change))
        user = "server";
    else if (!CheckDhcpRelay(name, change))
        user = "relay";
    if (user != nullptr)
        shell_print_error("<I_IFCLASS_TRUNK>  Command: inet ifconfig %s class trunk: DHCP %s uses the "
                          "interface. Command ignored",
                          name.c_str(), user);
    return user == nullptr;
}

// The log alone tells this one.
bool CheckNotSwitched(const std::string& name) {
    if (!IsL2OverIpSwitchOn(name))
        return true;
    shell_log_error(
        "<I_IFCLASS_TRUNK>  Command: inet ifconfig %s class trunk: L2OverIP configured as switch for "
        "this interface.",
        name.c_str());
    return false;
}

// One step on the way to an interface without addresses.
bool Run(const std::string& line, const std::string& failure) {
    if (RunLine(line))
        return true;
    PrintError(failure);
    shell_log_error("<I_IFCLASS_TRUNK>  %s", failure.c_str());
    return false;
}

bool DropAddresses(InterfaceEdit& edit) {
    const std::string& name = edit.Name();
    Print("All IP addresses and their aliases on this interface will be removed.");
    if (shell_get_user_confirmation("Continue?") == 0) {
        Print("Command terminated by user.");
        shell_log_info("<I_IFCLASS_TRUNK> Command: inet ifconfig %s class trunk  - terminated by user.",
                       name.c_str());
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
    if (!IsNameUsable(name) || IsInterfaceRoleRefused(name, kRefuseBoundSlave, true) ||
        !CheckClass(name, "access", "<I_IFCLASS_ACCESS>"))
        return false;
    InterfaceEdit edit(name);
    if (!edit.Load())
        return false;
    edit.entry.address.clear();
    edit.entry.netmask.clear();
    edit.entry.broadcast.clear();
    edit.entry.interface_class = corvanshell::kAccessClass;
    if (!edit.Save())
        return false;
    Print(name + " set to access class.");
    shell_log_info("<I_IFCLASS_ACCESS> Command: inet ifconfig %s class access", name.c_str());
    return true;
}

bool SetTrunkClass(const std::string& name) {
    shell_log_info("command: inet ifconfig %s class trunk", name.c_str());
    if (!IsNameUsable(name) || IsInterfaceRoleRefused(name, kRefuseBoundSlave, true) ||
        !CheckTrunkUsers(name) || !CheckClass(name, "trunk", "<I_IFCLASS_TRUNK>") || !CheckNotSwitched(name))
        return false;
    InterfaceEdit edit(name);
    if (!edit.Load() || (HasAddress(edit.entry) && !DropAddresses(edit)))
        return false;
    edit.entry.interface_class = corvanshell::kTrunkClass;
    if (!edit.Save())
        return false;
    shell_log_info("<I_IFCLASS_TRUNK> Command: inet ifconfig %s class trunk", name.c_str());
    Print(name + " set to trunk class.");
    return true;
}

} // namespace interfaces
