#include "commands/interfaces/address.h"

#include "commands/arguments/arguments.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/network.h"
#include "platform/processes.h"
#include "records/address_checks.h"

#include <algorithm>

namespace interfaces {
namespace {

using corvanshell::InterfaceEntry;

// What DHCP taught; it does not hold for a static address.
constexpr const char* kForgetLearned = "rm -f /etc/ntp.dhcp /etc/resolv.dhcp";

bool IsHostAddress(const std::string& text) {
    return arguments::IsAddress(text) && text != "0.0.0.0";
}

bool IsProperNetmask(const std::string& text) {
    return corvanshell::subnetmask_to_cidr(text) > 0;
}

// False, for the caller to end with.
bool LogFailure(const std::string& name) {
    shell_log_error("<IFCONF>  Command: inet ifconfig: cannot configure interface %s", name.c_str());
    return false;
}

bool CheckClass(const InterfaceEdit& edit) {
    if (edit.entry.interface_class != corvanshell::kTrunkClass)
        return true;
    PrintTrunkRefusal();
    shell_log_error("<IFCONF>  Command: inet ifconfig: cannot configure interface %s, is trunk class",
                    edit.CName());
    return false;
}

bool CheckNetmask(const std::string& name, const std::string& netmask) {
    if (netmask != "255.255.255.255" && netmask != "255.255.255.254")
        return true;
    Print("Can not execute for netmask 31 or 32.");
    Print("You should change netmask value to access to execute command.");
    shell_log_error(
        "<IFCONF>  Command: inet ifconfig: cannot configure interface %s, netmask should not be 31 or 32",
        name.c_str());
    return false;
}

bool IsAlias(const InterfaceEntry& entry, const std::string& address) {
    return std::find(entry.alias_addresses.begin(), entry.alias_addresses.end(), address) !=
           entry.alias_addresses.end();
}

// Whether no other interface, and no alias of any, has the address.
bool CheckUnassigned(const InterfaceEdit& edit, const std::string& address) {
    for (const auto& [name, entry] : edit.record.Interfaces()) {
        if ((name == edit.Name() || entry.address != address) && !IsAlias(entry, address))
            continue;
        shell_print_error("%s: cannot assign address while it is assigned to other interface or alias",
                          address.c_str());
        return false;
    }
    return true;
}

bool CheckUsers(const std::string& name, const Change& change) {
    const char* refused = nullptr;
    if (!CheckDhcpServer(name, change))
        refused = "server";
    else if (!CheckDhcpRelay(name, change))
        refused = "relay";
    if (refused == nullptr)
        return true;
    shell_print_error("DHCP %s: configuration check failed. Command ignored.", refused);
    return LogFailure(name);
}

// The link is taken down and up around the change on purpose, so that its neighbours learn of it:
// /sbin/ip link set dev eth1 down && /sbin/ip address flush label eth1 dev eth1 &&
// /sbin/ip address add 10.0.0.1/255.0.0.0 broadcast 10.255.255.255 label eth1 dev eth1 &&
// /bin/sleep 0.2 && /sbin/ip link set dev eth1 up
std::string ChangeLine(const InterfaceEdit& edit, const std::string& address, const std::string& netmask,
                       const std::string& broadcast) {
    const std::string& name = edit.Name();
    const std::string link = "/sbin/ip link set dev " + name;
    std::string line = "/sbin/ip address flush label " + name + " dev " + name + " && /sbin/ip address add " +
                       address + "/" + netmask;
    if (!broadcast.empty())
        line += " broadcast " + broadcast;
    line += " label " + name + " dev " + name;
    return edit.entry.up ? link + " down && " + line + " && /bin/sleep 0.2 && " + link + " up" : line;
}

// What stands between the ":" behind "Bcast" and the next blank; `computed` in a text without it.
std::string LiveBroadcast(const std::string& text, const std::string& computed) {
    const std::size_t word = text.find("Bcast");
    const std::size_t colon = word != std::string::npos ? text.find(':', word) : word;
    if (colon == std::string::npos)
        return computed;
    return text.substr(colon + 1, text.find_first_of(" \t\n", colon) - colon - 1);
}

// The address is free, and the others let the interface have it.
bool MayChange(const InterfaceEdit& edit, const std::string& address, const std::string& netmask) {
    return CheckClass(edit) && CheckNetmask(edit.Name(), netmask) && CheckUnassigned(edit, address) &&
           CheckUsers(edit.Name(), {.address_changes = true, .address = address, .netmask = netmask});
}

} // namespace

bool AreAddressAndNetmaskUsable(const std::string& address, const std::string& netmask) {
    return arguments::Check({{address, IsHostAddress, "address"}, {netmask, IsProperNetmask, "netmask"}});
}

bool IsNetworkFree(const InterfaceEdit& edit, const std::string& address, const std::string& broadcast,
                   const std::string& netmask, const std::string& failure) {
    switch (corvanshell::CheckAddressCrossing(edit.record, edit.Name(), address, broadcast, netmask, true)) {
    case corvanshell::kNoCrossing:
        return true;
    case corvanshell::kCrossing:
        shell_print_error("%s", failure.c_str());
        return false;
    case corvanshell::kCrossingFailure:
        shell_print_error("%s: function for broadcast checking returned error. Try to reset interfaces that "
                          "configured by DHCP or failover.ini.",
                          failure.c_str());
        return false;
    }
    return false;
}

bool SetAddress(const std::string& name, const std::string& address, const std::string& netmask) {
    InterfaceEdit edit(name);
    if (!OpenForChange(edit) || !AreAddressAndNetmaskUsable(address, netmask) ||
        !MayChange(edit, address, netmask))
        return false;
    WarnOfCertificate(edit.entry.address);
    // The client stays stopped, whatever becomes of the rest.
    if (IsDhcpConfigured(edit.entry))
        BaseExec::run("/sbin/dhcpclient.sh stop " + name);
    const std::string old_text = corvanshell::ifconfig(name);
    const std::string broadcast = corvanshell::getbrcast(address, netmask);
    if (!IsNetworkFree(edit, address, broadcast, netmask,
                       "cannot configure interface " + name + " with address " + address + " and netmask " +
                           netmask))
        return false;
    if (!RunLine(ChangeLine(edit, address, netmask, broadcast))) {
        Print("Can not configure the interface " + name);
        return LogFailure(name);
    }
    BaseExec::run(kForgetLearned);
    edit.entry.address = address;
    edit.entry.netmask = netmask;
    edit.entry.broadcast = LiveBroadcast(corvanshell::ifconfig(name), broadcast);
    if (!edit.Save())
        return false;
    UpdateDhcpServer(name);
    shell_log_info("<IFCONF>  Command: inet ifconfig %s address %s netmask %s\n Old ifconfig value: \n%s",
                   name.c_str(), address.c_str(), netmask.c_str(), old_text.c_str());
    BaseExec::run("/sbin/iphook.sh " + name);
    return true;
}

} // namespace interfaces
