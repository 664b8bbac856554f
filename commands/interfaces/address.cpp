#include "commands/interfaces/address.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/users.h"
#include "platform/messages.h"
#include "platform/network.h"
#include "platform/processes.h"
#include "records/address_checks.h"

#include <algorithm>

namespace interfaces {
namespace {

using corvanshell::InterfaceEntry;
using corvanshell::Network;

// What DHCP taught; it does not hold for a static address.
constexpr const char* kForgetLearned = "rm -f /etc/ntp.dhcp /etc/resolv.dhcp";

constexpr int kLongestPrefixOfNetwork = 30; // a longer one leaves no address for network and broadcast

bool IsProperNetmask(const std::string& text) {
    return corvanshell::subnetmask_to_cidr(text) > 0;
}

bool IsGiven(const std::string& text) {
    return arguments::IsAddress(text) && text != "0.0.0.0";
}

bool RefuseConfiguration(const std::string& name) {
    return RefuseInLog("<IFCONF>  Command: inet ifconfig: cannot configure interface %s", name);
}

bool CheckClass(const InterfaceEdit& edit) {
    if (edit.entry.interface_class != corvanshell::kTrunkClass)
        return true;
    WriteTrunkRefusal();
    return RefuseInLog("<IFCONF>  Command: inet ifconfig: cannot configure interface %s, is trunk class",
                       edit.Name());
}

bool CheckNetmask(const std::string& name, const std::string& netmask) {
    if (netmask != "255.255.255.255" && netmask != "255.255.255.254")
        return true;
    WriteLine("Can not execute for netmask 31 or 32.");
    WriteLine("You should change netmask value to access to execute command.");
    return RefuseInLog(
        "<IFCONF>  Command: inet ifconfig: cannot configure interface %s, netmask should not be 31 or 32",
        name);
}

bool IsAlias(const InterfaceEntry& entry, const std::string& address) {
    return std::find(entry.alias_addresses.begin(), entry.alias_addresses.end(), address) !=
           entry.alias_addresses.end();
}

// Whether no other interface, and no alias of any, has the address.
bool CheckUnassigned(const InterfaceEdit& edit, const std::string& address) {
    const auto has_address = [&](const auto& row) {
        return (row.first != edit.Name() && row.second.address == address) || IsAlias(row.second, address);
    };
    const auto& all = edit.record.Interfaces();
    return std::none_of(all.begin(), all.end(), has_address) ||
           Refuse("%s: cannot assign address while it is assigned to other interface or alias", address);
}

bool CheckUsers(const InterfaceEdit& edit, const Network& network) {
    const char* const user =
        FindRefusingUser(edit.record, edit.Name(), {.address_changes = true, .network = network});
    if (user == nullptr)
        return true;
    PrintError("DHCP %s: configuration check failed. Command ignored.", user);
    return RefuseConfiguration(edit.Name());
}

// The link is taken down and up around the change on purpose, so that its neighbours learn of it:
// /sbin/ip link set dev eth1 down && /sbin/ip address flush label eth1 dev eth1 &&
// /sbin/ip address add 10.0.0.1/255.0.0.0 broadcast 10.255.255.255 label eth1 dev eth1 &&
// /bin/sleep 0.2 && /sbin/ip link set dev eth1 up
std::string ChangeLine(const InterfaceEdit& edit, const Network& network) {
    const std::string& name = edit.Name();
    const std::string link = "/sbin/ip link set dev " + name;
    std::string line = "/sbin/ip address flush label " + name + " dev " + name + " && /sbin/ip address add " +
                       network.address + "/" + network.netmask;
    if (!network.broadcast.empty())
        line += " broadcast " + network.broadcast;
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
bool MayChange(const InterfaceEdit& edit, const Network& network) {
    return CheckClass(edit) && CheckNetmask(edit.Name(), network.netmask) &&
           CheckUnassigned(edit, network.address) && CheckUsers(edit, network);
}

// Gives the system the network, when no other crosses it.
bool ChangeSystem(const InterfaceEdit& edit, const Network& network) {
    const std::string& name = edit.Name();
    if (!IsNetworkFree(edit, network,
                       "cannot configure interface " + name + " with address " + network.address +
                           " and netmask " + network.netmask))
        return false;
    if (!RunLine(ChangeLine(edit, network))) {
        WriteLine("Can not configure the interface " + name);
        return RefuseConfiguration(name);
    }
    BaseExec::run(kForgetLearned);
    return true;
}

} // namespace

bool ReadNetwork(const std::string& address, const std::string& netmask, Network& network) {
    network = corvanshell::MakeNetwork(address, netmask);
    return arguments::Check({{address, IsGiven, "address"}, {netmask, IsProperNetmask, "netmask"}});
}

bool CanHostHave(const std::string& address, const std::string& netmask) {
    Network network;
    if (!ReadNetwork(address, netmask, network))
        return false;
    if (!arguments::IsHostAddress(network.address))
        return Refuse(Tr("%s: loopback, multicast or reserved address"), network.address);
    if (corvanshell::subnetmask_to_cidr(network.netmask) > kLongestPrefixOfNetwork)
        return true;
    if (network.address == network.broadcast)
        return Refuse(Tr("%s: broadcast address of the network itself"), network.address);
    return network.address != corvanshell::getnetwork(network.address, network.netmask) ||
           Refuse(Tr("%s: address of the network itself"), network.address);
}

bool IsNetworkFree(const InterfaceEdit& edit, const Network& network, const std::string& failure) {
    switch (corvanshell::CheckAgainstAll(edit.record, edit.Name(), network, true)) {
    case corvanshell::kNoCrossing:
        return true;
    case corvanshell::kCrossing:
        return Refuse("%s", failure);
    case corvanshell::kCrossingFailure:
        return Refuse("%s: function for broadcast checking returned error. Try to reset interfaces that "
                      "configured by DHCP or failover.ini.",
                      failure);
    }
    return false;
}

bool SetAddress(const std::string& name, const std::string& address, const std::string& netmask) {
    InterfaceEdit edit(name);
    Network network;
    if (!OpenForChange(edit) || !ReadNetwork(address, netmask, network) || !MayChange(edit, network))
        return false;
    WarnOfCertificate(edit.entry.address);
    // The client stays stopped, whatever becomes of the rest.
    if (IsDhcpConfigured(edit.entry))
        BaseExec::run("/sbin/dhcpclient.sh stop " + name);
    const std::string old_text = corvanshell::ifconfig(name);
    if (!ChangeSystem(edit, network))
        return false;
    edit.entry.address = network.address;
    edit.entry.netmask = network.netmask;
    edit.entry.broadcast = LiveBroadcast(corvanshell::ifconfig(name), network.broadcast);
    if (!edit.Save())
        return false;
    UpdateDhcpServer(edit.record, name);
    LogInfo("<IFCONF>  Command: inet ifconfig %s address %s netmask %s\n Old ifconfig value: \n%s", name,
            address, netmask, old_text);
    BaseExec::run("/sbin/iphook.sh " + name);
    return true;
}

} // namespace interfaces
