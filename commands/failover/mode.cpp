#include "commands/failover/mode.h"

#include "commands/failover/services.h"
#include "front/probes/cluster.h"
#include "front/probes/system.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "platform/shell_tree.h"
#include "records/common_conf_struct.h"
#include "records/conf_struct.h"
#include "units/dhcp_server/model/gates.h"

#include <cstdio>
#include <initializer_list>
#include <libintl.h>
#include <unistd.h>

namespace failover {
namespace {

constexpr const char* kQuagga = "/etc/init.d/quagga";
constexpr const char* kLeave = "/sbin/failover uninstall";
constexpr const char* kEnter = "/sbin/failover install";
constexpr const char* kModeLog = "<F_MOD> Command failover config mode";

enum Mode { kSingle = 0, kCluster = 1 };

bool Refuse(std::initializer_list<const char*> lines) {
    for (const char* line : lines)
        shell_print_error("%s", gettext(line));
    return false;
}

void PrintNames(const std::set<std::string>& names) {
    for (const std::string& name : names)
        std::printf("\t%s\n", name.c_str());
}

// The program tells its reason. Behind it nothing may change that belongs to the new mode.
bool SwitchMode(const char* line) {
    if (BaseExec::run(line) == 0)
        return true;
    shell_print_error(gettext("failed to run %s"), line);
    return false;
}

void ChangeShell(Mode mode) {
    Shell::Get().SetMode(mode);
    Shell::Get().RebuildTree();
}

// Whether the settings and the running services leave room for a cluster.
bool IsClusterPossible() {
    if (GetClusterMode() == kCluster)
        return Refuse({"Failover is already in cluster mode. Command ignored."});
    const corvanshell::CConfStruct local(path_list::local_settings, true);
    if (!local.IsWhole()) // nobody would know what is enabled
        return Refuse({"failed to read network settings, nothing is changed"});
    if (local.GetFlag("WIFI"))
        return Refuse(
            {"WiFi service is in use.", "In the cluster mode the WiFi service should be disabled."});
    if (corvanshell::CommonConfStruct().GetFlag("DHCP_SERVER"))
        return Refuse({"The DHCP server has been configured to start automatically.",
                       "In the cluster mode the DHCP server should be disabled"});
    if (settings::dhcp_server::IsDhcpServerRunning())
        return Refuse({"The DHCP server is running.", "Stop it before switching to the cluster mode."});
    if (IsServiceRunning("/sbin/failoverd"))
        return Refuse({"Failover daemon is running. Stop it before switching to the cluster mode."});
    const std::set<std::string> enabled = ListEnabledServices();
    if (enabled.empty())
        return true;
    (void)Refuse(
        {"The following services are currently enabled. Turn them off before enabling cluster mode"});
    PrintNames(enabled);
    return false;
}

// Without a terminal nobody is there to ask, and `unattended` is told instead.
bool Confirm(const char* question, const char* unattended) {
    if (isatty(STDIN_FILENO) == 1)
        return shell_get_user_confirmation("%s", gettext(question)) != 0;
    shell_print_info("%s", gettext(unattended));
    return true;
}

bool MayStopServices() {
    const bool attended = isatty(STDIN_FILENO) == 1;
    const bool approved =
        Confirm("Do you want to stop all services that are not allowed to run in cluster mode now?",
                "stdin is not a terminal. Stopping services without confirmation.");
    if (!attended)
        return true;
    shell_print_info("%s", gettext(approved ? "You have approved services stopping. Proceeding..."
                                            : "You have cancelled services stopping."));
    shell_log_info("%s", approved ? "User approved services stopping. Proceeding..."
                                  : "User cancelled services stopping.");
    return approved;
}

void StopForbiddenServices() {
    const std::set<std::string> forbidden = ListForbiddenServices();
    shell_print_info("%s", gettext("Note: the following services are NOT allowed to run in cluster mode:"));
    PrintNames(forbidden);
    shell_print_info("%s", gettext("If any of them are currently running, please stop them"));
    if (!MayStopServices())
        return;
    for (const std::string& name : forbidden) {
        shell_print_info(gettext("Switching to cluster mode. Attempt to stop the following service: %s"),
                         name.c_str());
        StopService(name);
    }
}

void StartEnabledServices() {
    for (const std::string& name : ListEnabledServices()) {
        shell_print_info(gettext("Switching to single mode. Attempt to start the following service: %s"),
                         name.c_str());
        StartService(name);
    }
}

} // namespace

bool EnterSingleMode() {
    shell_log_info("command: failover config mode single");
    if (GetClusterMode() == kSingle)
        return Refuse({"Failover is already in single mode. Command ignored."});
    // The passive node's routing daemon sleeps.
    const bool wants_quagga =
        IsDisabledOnPassiveNode("") && shell_spawn_quiet(kQuagga, "is-running", nullptr) != 0;
    if (!SwitchMode(kLeave))
        return false;
    ChangeShell(kSingle);
    StartEnabledServices();
    bool done = true;
    if (wants_quagga && shell_spawn_quiet(kQuagga, "start", nullptr) != 0)
        done = Refuse({"failed to start quagga"});
    (void)shell_spawn("/etc/init.d/vpn-snmpd", "restart", nullptr); // tells its failure itself
    slput(kLogInfo, "%s", kModeLog);
    return done;
}

bool EnterClusterMode() {
    if (!IsClusterPossible() ||
        !Confirm("Do you want to switch to the cluster mode?",
                 "stdin is not a terminal. Switching to cluster mode without confirmation."))
        return false;
    if (!SwitchMode(kEnter))
        return false;
    slput(kLogInfo, "%s", kModeLog);
    StopForbiddenServices();
    ChangeShell(kCluster);
    return true;
}

} // namespace failover
