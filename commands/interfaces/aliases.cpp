#include "commands/interfaces/aliases.h"

#include "commands/interfaces/address.h"
#include "commands/interfaces/users.h"
#include "platform/messages.h"
#include "platform/processes.h"

#include <algorithm>

namespace interfaces {
namespace {

using corvanshell::InterfaceEntry;
using corvanshell::Network;

// Runs /sbin/ifalias.sh add eth1 10.0.0.1/255.0.0.0 2>&1 and gives what it printed: the alias's name. False
// when it fails or names none.
bool RunScript(const std::string& action, const std::string& name, const Network& network,
               std::string& output) {
    const std::string line =
        "/sbin/ifalias.sh " + action + " " + name + " " + network.address + "/" + network.netmask + " 2>&1";
    return corvanshell::run(line.c_str(), output) == 0 && !output.empty();
}

bool MayAddAlias(const InterfaceEdit& edit, const Network& network) {
    if (edit.entry.interface_class == corvanshell::kTrunkClass)
        return Refuse("cannot execute for inteface of trunk class. You should change interface class to "
                      "access to execute command");
    if (IsDhcpConfigured(edit.entry))
        return Refuse("Cannot add alias to DHCP configured interface");
    // An alias alone would be read back as the main address.
    if (!HasAddress(edit.entry))
        return Refuse(Tr("%s: cannot add alias to interface without a main address"), edit.Name());
    return HasRoomForAdapter(".") && IsNetworkFree(edit, network,
                                                   "cannot configure alias with address " + network.address +
                                                       " and netmask " + network.netmask);
}

bool MayDeleteAlias(const InterfaceEdit& edit) {
    if (edit.entry.interface_class == corvanshell::kTrunkClass) {
        WriteTrunkRefusal();
        return false;
    }
    if (IsDhcpConfigured(edit.entry)) {
        WriteLine("Can not delete alias on DHCP configured interface");
        return false;
    }
    return true;
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
    LogInfo("command: inet ifconfig %s address add %s %s", name, address, netmask);
    InterfaceEdit edit(name);
    Network network;
    if (!OpenForChange(edit) || !ReadNetwork(address, netmask, network) || !MayAddAlias(edit, network))
        return false;
    std::string alias;
    if (!RunScript("add", name, network, alias))
        return Refuse("failed to create alias on %s", name);
    edit.entry.alias_addresses.push_back(network.address);
    edit.entry.alias_netmasks.push_back(network.netmask);
    edit.entry.alias_broadcasts.push_back(network.broadcast);
    if (!edit.Save())
        return false;
    PrintInfo("Alias %s was created.", alias);
    return true;
}

bool DeleteAlias(const std::string& name, const std::string& address, const std::string& netmask) {
    InterfaceEdit edit(name);
    Network network;
    if (!OpenForChange(edit) || !ReadNetwork(address, netmask, network) || !MayDeleteAlias(edit))
        return false;
    WarnOfCertificate(edit.entry.address);
    std::string output;
    if (!RunScript("delete", name, network, output))
        return Refuse("<DEL_ALIAS> Failed to delete alias on %s : %s", name, output);
    const std::string done = "Alias " + output + " was deleted.";
    WriteLine(done);
    EraseAlias(edit.entry, address);
    if (!edit.Save())
        return false;
    LogInfo("<DEL_ALIAS> Command: 'inet ifconfig %s address delete %s %s'. %s", name, address, netmask, done);
    return true;
}

} // namespace interfaces
