#include "commands/interfaces/aliases.h"

#include "commands/interfaces/address.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/network.h"
#include "platform/processes.h"

#include <algorithm>

namespace interfaces {
namespace {

using corvanshell::InterfaceEntry;

// Runs /sbin/ifalias.sh add eth1 10.0.0.1/255.0.0.0 2>&1 and gives what it printed: the alias's name. False
// when it fails or names none.
bool RunScript(const std::string& action, const std::string& name, const std::string& address,
               const std::string& netmask, std::string& output) {
    const std::string line =
        "/sbin/ifalias.sh " + action + " " + name + " " + address + "/" + netmask + " 2>&1";
    return corvanshell::run(line.c_str(), output) == 0 && !output.empty();
}

// The lists are parallel, and a file may hold them with different lengths.
void EraseAlias(InterfaceEntry& entry, const std::string& address) {
    const auto found = std::find(entry.alias_addresses.begin(), entry.alias_addresses.end(), address);
    if (found == entry.alias_addresses.end())
        return;
    const auto index = found - entry.alias_addresses.begin();
    for (auto* list : {&entry.alias_addresses, &entry.alias_netmasks, &entry.alias_broadcasts}) {
        if (index < std::ssize(*list))
            list->erase(list->begin() + index);
    }
}

} // namespace

bool AddAlias(const std::string& name, const std::string& address, const std::string& netmask) {
    shell_log_info("command: inet ifconfig %s address add %s %s", name.c_str(), address.c_str(),
                   netmask.c_str());
    InterfaceEdit edit(name);
    if (!OpenForChange(edit) || !AreAddressAndNetmaskUsable(address, netmask))
        return false;
    if (edit.entry.interface_class == corvanshell::kTrunkClass) {
        shell_print_error("cannot execute for inteface of trunk class. You should change interface class to "
                          "access to execute command");
        return false;
    }
    if (IsDhcpConfigured(edit.entry)) {
        shell_print_error("Cannot add alias to DHCP configured interface");
        return false;
    }
    if (!HasRoomForAdapter("."))
        return false;
    const std::string broadcast = corvanshell::getbrcast(address, netmask);
    if (!IsNetworkFree(edit, address, broadcast, netmask,
                       "cannot configure alias with address " + address + " and netmask " + netmask))
        return false;
    std::string alias;
    if (!RunScript("add", name, address, netmask, alias)) {
        shell_print_error("failed to create alias on %s", name.c_str());
        return false;
    }
    edit.entry.alias_addresses.push_back(address);
    edit.entry.alias_netmasks.push_back(netmask);
    edit.entry.alias_broadcasts.push_back(broadcast);
    if (!edit.Save())
        return false;
    shell_print_info("Alias %s was created.", alias.c_str());
    return true;
}

bool DeleteAlias(const std::string& name, const std::string& address, const std::string& netmask) {
    InterfaceEdit edit(name);
    if (!OpenForChange(edit) || !AreAddressAndNetmaskUsable(address, netmask))
        return false;
    if (edit.entry.interface_class == corvanshell::kTrunkClass) {
        PrintTrunkRefusal();
        return false;
    }
    if (IsDhcpConfigured(edit.entry)) {
        Print("Can not delete alias on DHCP configured interface");
        return false;
    }
    WarnOfCertificate(edit.entry.address);
    std::string output;
    if (!RunScript("delete", name, address, netmask, output)) {
        const std::string text = "Failed to delete alias on " + name + " : " + output;
        shell_print_error("<DEL_ALIAS> %s", text.c_str());
        return false;
    }
    const std::string done = "Alias " + output + " was deleted.";
    Print(done);
    EraseAlias(edit.entry, address);
    if (!edit.Save())
        return false;
    const std::string command = "inet ifconfig " + name + " address delete " + address + " " + netmask;
    shell_log_info("<DEL_ALIAS> Command: '%s'. %s", command.c_str(), done.c_str());
    return true;
}

} // namespace interfaces
