#include "commands/interfaces/reset.h"

#include "commands/interfaces/command_frame.h"
#include "commands/interfaces/users.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_server/model/gates.h"

#include <iostream>

namespace interfaces {
namespace {

using corvanshell::CConfStruct;

constexpr const char* kResetScript = "/sbin/ifsetfromconfig.sh";
constexpr const char* kAccessPointDaemon = "hostapd";

bool IsAccessPointRunning(const CConfStruct& record) {
    return record.IsWifiServer() && check_pid(read_pid(kAccessPointDaemon, true));
}

// Every interface of the server is asked, and of the relays the first alone.
bool MayResetAll(const CConfStruct& record) {
    for (const std::string& name : settings::dhcp_server::ListListenInterfaces()) {
        if (!CheckDhcpServer(record, name, {.going_down = true}))
            return Refuse("Failed to reset the interfaces, one or more interfaces are used for DHCP server. "
                          "Command ignored");
    }
    const auto relayed = settings::dhcp_relay::ListRelayListenInterfaces();
    return relayed.empty() ||
           CheckDhcpRelay(relayed.front(), {.going_down = true, .address_changes = true}) ||
           Refuse("Failed to reset the interfaces, one or more interfaces are used for DHCP relay. Command "
                  "ignored");
}

} // namespace

bool ResetInterface(const std::string& name) {
    LogInfo("command: inet ifconfig %s reset", name);
    InterfaceEdit edit(name);
    if (!OpenForChange(edit))
        return false;
    if (FindRefusingUser(edit.record, name, {.going_down = true, .address_changes = true}) != nullptr)
        return Refuse("Failed to reset interface %s. Command ignored", name);
    if (IsWifiName(name) && IsAccessPointRunning(edit.record))
        return Refuse("WiFi service is in access point mode and running. The %s reset is prohibited.", name);
    WarnOfCertificate(edit.entry.address);
    if (shell_spawn(kResetScript, "reset", name.c_str(), nullptr) != 0)
        return WriteAndLog(std::cout, "", "Failed to reset interface " + name);
    LogInfo("Reset of interface %s done.", name);
    UpdateDhcpServer(edit.record, name);
    return true;
}

bool ResetAllInterfaces() {
    LogInfo("command: inet ifconfig all reset");
    PrintWarning("Attention: Upon changing the network interface settings, make similar changes to the "
                 "services that use this interface and then restart them.");
    if (const CConfStruct record(path_list::local_settings, true);
        !record.CheckRead() || !MayResetAll(record))
        return false;
    if (shell_spawn(kResetScript, "reset", "all", nullptr) != 0)
        return WriteAndLog(std::cout, "", "Failed to reset interfaces.");
    // The script may leave a file that the system has to bring to its own form and guard.
    CConfStruct record(path_list::local_settings, true);
    if (!record.CheckRead() || !WriteRecord(record))
        return false;
    LogInfo("Reset of interfaces done.");
    return true;
}

} // namespace interfaces
