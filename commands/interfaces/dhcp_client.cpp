#include "commands/interfaces/dhcp_client.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/command_frame.h"
#include "commands/interfaces/users.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <iostream>

namespace interfaces {
namespace {

using corvanshell::InterfaceEntry;

const std::string kClient = "/sbin/dhcpclient.sh ";
constexpr const char* kRenewMetrics = "/sbin/dhcpclient.sh renew-metrics";
constexpr const char* kLogPrefix = "<DHCLIENT>  ";
constexpr const char* kNextLease = "on the next DHCP lease renewal.";

// What a lease may also bring.
struct Use {
    const char* what;
    bool InterfaceEntry::*field;
    const char* servers;   // null for routes
    const char* when_dhcp; // the closing words when the interface is not under DHCP
    const char* already_off;
};

constexpr Use kUses[] = {
    {"route", &InterfaceEntry::dhcp_route, nullptr, "when DHCP is enabled on that interface.",
     "already uses"},
    {"dns", &InterfaceEntry::dhcp_dns, "DNS", "when DHCP is enabled on that interface.", "already uses"},
    // Spelled so.
    {"ntp", &InterfaceEntry::dhcp_ntp, "NTP", "when DHCP is be enabled on that interface.", "no longer uses"},
};

const Use* FindUse(const std::string& what) {
    for (const Use& use : kUses) {
        if (what == use.what)
            return &use;
    }
    PrintError("%s: neither route nor dns nor ntp", what);
    return nullptr;
}

bool CheckMode(const InterfaceEdit& edit) {
    if (edit.entry.interface_class == corvanshell::kTrunkClass) {
        WriteTrunkRefusalSpelledRight();
        return false;
    }
    if (IsDhcpConfigured(edit.entry)) {
        WriteLine("Interface is in DHCP mode already.");
        return false;
    }
    if (IsWifiName(edit.Name()) && edit.record.IsWifiServer()) {
        WriteLine("Can not execute for interface in wifi access point mode.");
        WriteLine("You should change WiFi role to execute command.");
        return false;
    }
    return true;
}

bool ConfirmAliases(const InterfaceEdit& edit) {
    return edit.entry.alias_addresses.empty() ||
           shell_get_user_confirmation("Aliases on the interface %s will be removed.\nAre you sure?",
                                       edit.Name().c_str()) != 0 ||
           Refuse("<DHCLIENT> Command: 'inet ifconfig %s dhcp'. Not confirmed. Command is skipped.",
                  edit.Name());
}

bool MayUseDhcp(const InterfaceEdit& edit) {
    const std::string& name = edit.Name();
    if (!CheckMode(edit))
        return false;
    if (FindRefusingUser(edit.record, name, {}) != nullptr)
        return Refuse("<DHCLIENT> The command 'inet ifconfig %s dhcp' cannot be executed for interface %s",
                      name, name);
    return ConfirmAliases(edit);
}

// Takes the static address from the system, with the link down where it was up.
bool DropAddress(const std::string& name, bool up) {
    if (up && !RunLine("/sbin/ifconfig " + name + " down"))
        return WriteAndLog(std::cerr, kLogPrefix, "Cannot down interface " + name);
    if (!RunLine("ip addr flush label " + name + " dev " + name))
        return WriteAndLog(std::cerr, kLogPrefix, "Cannot flush the address of interface " + name);
    if (!up)
        return true;
    if (shell_spawn("/sbin/ifconfig", name.c_str(), "up", nullptr) != 0)
        return WriteAndLog(std::cerr, kLogPrefix, "Cannot up interface " + name);
    if (const int status = shell_spawn("/sbin/if_postcmd.sh", name.c_str(), "up", nullptr); status != 0)
        PrintError("failed to post up command for %s with error: %d", name, status);
    return true;
}

// Starts the client. On failure the earlier entry is written again.
bool StartClient(InterfaceEdit& edit, const InterfaceEntry& earlier) {
    const std::string& name = edit.Name();
    if (RunLine(kClient + "start " + name))
        return true;
    WriteAndLog(std::cout, kLogPrefix,
                "The command 'inet ifconfig " + name +
                    " dhcp' cannot be executed: the dhcpclient cannot be started on the interface " + name);
    edit.entry = earlier;
    static_cast<void>(edit.Save()); // reports its failure
    return false;
}

void WriteUse(const std::string& name, const Use& use, bool on, bool dhcp) {
    const std::string when = dhcp ? kNextLease : use.when_dhcp;
    if (use.servers != nullptr) {
        WriteLine(std::string(use.servers) + " servers obtained from DHCP server via " + name +
                  (on ? " will be used " : " will not be used ") + when);
    } else if (!on && dhcp) {
        BaseExec::run(kClient + "clear-routes " + name);
        WriteLine("DHCP routes via " + name + " removed.");
    } else {
        WriteLine("DHCP routes via " + name + " will be used " + when);
    }
}

} // namespace

bool SetDhcp(const std::string& name) {
    InterfaceEdit edit(name);
    if (!OpenForChange(edit) || !MayUseDhcp(edit))
        return false;
    WarnOfCertificate(edit.entry.address);
    const InterfaceEntry earlier = edit.entry;
    const std::string old_text = corvanshell::ifconfig(name);
    if (!DropAddress(name, earlier.up))
        return false;
    ClearAddresses(edit.entry);
    edit.entry.address = edit.entry.netmask = edit.entry.broadcast = corvanshell::kDhcpAddress;
    if (!edit.Save())
        return false;
    if (earlier.up && !StartClient(edit, earlier))
        return false;
    LogInfo("<DHCLIENT> Command: inet ifconfig dhcp %s\n Old ifconfig value: %s", name, old_text);
    UpdateDhcpServer(edit.record, name);
    return true;
}

bool SetDhcpUse(const std::string& name, const std::string& what, const std::string& value) {
    InterfaceEdit edit(name);
    if (!OpenForChange(edit) || !arguments::Check({{value, arguments::IsOnOff, "value"}}))
        return false;
    const Use* const use = FindUse(what);
    if (use == nullptr)
        return false;
    if (edit.entry.interface_class == corvanshell::kTrunkClass) {
        WriteTrunkRefusal();
        return RefuseInLog(
            "<IFCONF>  Command: inet ifconfig %s dhcp %s what : cannot configure interface, is trunk class",
            name, what);
    }
    const bool on = value == "on";
    if (edit.entry.*use->field == on) {
        const std::string text = "Interface " + name + " " + (on ? "already uses" : use->already_off) + " " +
                                 what + " obtained from DHCP server";
        WriteErrorLine(text);
        LogInfo("%s", text);
        return false;
    }
    edit.entry.*use->field = on;
    if (!edit.Save())
        return false;
    WriteUse(name, *use, on, IsDhcpConfigured(edit.entry));
    return true;
}

bool SetDhcpMetric(const std::string& name, const std::string& value) {
    InterfaceEdit edit(name);
    if (!OpenForChange(edit) || !arguments::Check({{value, arguments::IsMetric, "metric"}}))
        return false;
    if (edit.entry.interface_class == corvanshell::kTrunkClass) {
        WriteTrunkRefusal();
        return RefuseInLog("<IFCONF>  Command: inet ifconfig %s dhcp route-metric : cannot configure "
                           "interface, is trunk class",
                           name);
    }
    edit.entry.dhcp_metric = value == "none" ? "" : value;
    if (!edit.Save())
        return false;
    if (IsDhcpConfigured(edit.entry)) {
        BaseExec::run(kRenewMetrics);
    } else {
        WriteLine("Warning: interface " + name + " does not use DHCP at this moment.");
        WriteLine("DHCP route metric change will take effect when DHCP will be used.");
    }
    return true;
}

bool SetDefaultDhcpMetric(const std::string& value) {
    if (IsDisabledOnPassiveNode(gettext("IP routing")) ||
        !arguments::Check({{value, arguments::IsNumber, "metric"}}))
        return false;
    corvanshell::CConfStruct record(path_list::local_settings, true);
    if (!record.CheckRead())
        return false;
    record.SetDefaultDhcpMetric(value);
    if (!WriteRecord(record))
        return false;
    BaseExec::run(kRenewMetrics);
    return true;
}

} // namespace interfaces
