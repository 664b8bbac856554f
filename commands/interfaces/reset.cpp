#include "commands/interfaces/reset.h"

#include "commands/interfaces/command_frame.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_server/model/gates.h"

namespace interfaces {
namespace {

constexpr const char* kResetScript = "/sbin/ifsetfromconfig.sh";
constexpr const char* kAccessPointDaemon = "hostapd";

bool IsAccessPointRunning(const corvanshell::CConfStruct& record) {
    return record.IsWifiServer() && check_pid(read_pid(kAccessPointDaemon, true));
}

bool MayResetAll() {
    for (const std::string& name : settings::dhcp_server::ListListenInterfaces()) {
        if (CheckDhcpServer(name, {.going_down = true}))
            continue;
        shell_print_error("Failed to reset the interfaces, one or more interfaces are used for DHCP server. "
                          "Command ignored");
        return false;
    }
    // The first listen interface answers for all relays.
    const auto relayed = settings::dhcp_relay::ListRelayListenInterfaces();
    if (relayed.empty() || CheckDhcpRelay(relayed.front(), {.going_down = true, .address_changes = true}))
        return true;
    shell_print_error(
        "Failed to reset the interfaces, one or more interfaces are used for DHCP relay. Command ignored");
    return false;
}

} // namespace

bool ResetInterface(const std::string& name) {
    shell_log_info("command: inet ifconfig %s reset", name.c_str());
    InterfaceEdit edit(name);
    if (!OpenForChange(edit))
        return false;
    if (!CheckDhcp(name, {.going_down = true, .address_changes = true})) {
        shell_print_error("Failed to reset interface %s. Command ignored", name.c_str());
        return false;
    }
    if (IsWifiName(name) && IsAccessPointRunning(edit.record)) {
        shell_print_error("WiFi service is in access point mode and running. The %s reset is prohibited.",
                          name.c_str());
        return false;
    }
    WarnOfCertificate(edit.entry.address);
    if (shell_spawn(kResetScript, "reset", name.c_str(), nullptr) != 0) {
        const char* const failure = "Failed to reset interface ";
        Print(failure + name);
        shell_log_error("%s%s", failure, name.c_str());
        return false;
    }
    shell_log_info("Reset of interface %s done.", name.c_str());
    UpdateDhcpServer(name);
    return true;
}

bool ResetAllInterfaces() {
    shell_log_info("command: inet ifconfig all reset");
    shell_print_warning(
        "Attention: Upon changing the network interface settings, make similar changes to the "
        "services that use this interface and then restart them.");
    if (!MayResetAll())
        return false;
    if (shell_spawn(kResetScript, "reset", "all", nullptr) != 0) {
        const char* const failure = "Failed to reset interfaces.";
        Print(failure);
        shell_log_error("%s", failure);
        return false;
    }
    // The script may leave a file that the system has to bring to its own form and guard.
    corvanshell::CConfStruct record(path_list::local_settings, true);
    if (!IsReadable(record) || !WriteRecord(record))
        return false;
    shell_log_info("Reset of interfaces done.");
    return true;
}

} // namespace interfaces
