#include "commands/failover/mode.h"

#include "commands/failover/services.h"
#include "front/probes/cluster.h"
#include "front/probes/system.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "platform/shell_tree.h"
#include "records/common_conf_struct.h"
#include "records/conf_struct.h"
#include "units/dhcp_server/model/gates.h"

#include <cstdio>
#include <libintl.h>
#include <unistd.h>

namespace failover {
namespace {

constexpr const char* kQuagga = "/etc/init.d/quagga";
constexpr const char* kSnmp = "/etc/init.d/vpn-snmpd";
constexpr const char* kLeave = "/sbin/failover uninstall";
constexpr const char* kEnter = "/sbin/failover install";
constexpr const char* kModeLog = "<F_MOD> Command failover config mode";

enum Mode { kSingle = 0, kCluster = 1 };

void PrintNames(const std::set<std::string>& names) {
    for (const std::string& name : names)
        std::printf("\t%s\n", name.c_str());
}

// The program tells its reason. Behind it nothing may change that belongs to the new mode.
bool SwitchMode(const char* line) {
    return BaseExec::run(line) == 0 || Refuse(Tr("failed to run %s"), line);
}

void ChangeShell(Mode mode) {
    Shell::Get().SetMode(mode);
    Shell::Get().RebuildTree();
}

bool AreSettingsReady() {
    const corvanshell::CConfStruct local(path_list::local_settings, true);
    const corvanshell::CommonConfStruct common;
    if (!local.CheckRead() || !common.CheckRead()) // nobody would know what is enabled
        return false;
    if (local.GetFlag("WIFI")) {
        PrintError(Tr("WiFi service is in use."));
        return Refuse(Tr("In the cluster mode the WiFi service should be disabled."));
    }
    if (common.GetFlag("DHCP_SERVER")) {
        PrintError(Tr("The DHCP server has been configured to start automatically."));
        return Refuse(Tr("In the cluster mode the DHCP server should be disabled"));
    }
    return true;
}

bool AreServicesStopped() {
    if (settings::dhcp_server::IsDhcpServerRunning()) {
        PrintError(Tr("The DHCP server is running."));
        return Refuse(Tr("Stop it before switching to the cluster mode."));
    }
    if (IsServiceRunning("/sbin/failoverd"))
        return Refuse(Tr("Failover daemon is running. Stop it before switching to the cluster mode."));
    std::set<std::string> enabled;
    if (!ListEnabledServices(enabled))
        return false;
    if (enabled.empty())
        return true;
    PrintError(
        Tr("The following services are currently enabled. Turn them off before enabling cluster mode"));
    PrintNames(enabled);
    return false;
}

// Without a terminal nobody is there to ask, and `unattended` is told instead.
bool Confirm(const char* question, const char* unattended) {
    if (isatty(STDIN_FILENO) == 1)
        return shell_get_user_confirmation("%s", gettext(question)) != 0;
    PrintInfo("%s", gettext(unattended));
    return true;
}

bool MayStopServices() {
    const bool attended = isatty(STDIN_FILENO) == 1;
    const bool approved =
        Confirm("Do you want to stop all services that are not allowed to run in cluster mode now?",
                "stdin is not a terminal. Stopping services without confirmation.");
    if (!attended)
        return true;
    if (approved) {
        PrintInfo(Tr("You have approved services stopping. Proceeding..."));
        LogInfo("User approved services stopping. Proceeding...");
    } else {
        PrintInfo(Tr("You have cancelled services stopping."));
        LogInfo("User cancelled services stopping.");
    }
    return approved;
}

void StopForbiddenServices() {
    const std::set<std::string> forbidden = ListForbiddenServices();
    PrintInfo(Tr("Note: the following services are NOT allowed to run in cluster mode:"));
    PrintNames(forbidden);
    PrintInfo(Tr("If any of them are currently running, please stop them"));
    if (!MayStopServices())
        return;
    for (const std::string& name : forbidden) {
        PrintInfo(Tr("Switching to cluster mode. Attempt to stop the following service: %s"), name);
        StopService(name);
    }
}

bool StartEnabledServices() {
    std::set<std::string> enabled;
    if (!ListEnabledServices(enabled))
        return false;
    for (const std::string& name : enabled) {
        PrintInfo(Tr("Switching to single mode. Attempt to start the following service: %s"), name);
        StartService(name);
    }
    return true;
}

} // namespace

bool EnterSingleMode() {
    LogInfo("command: failover config mode single");
    if (GetClusterMode() == kSingle)
        return Refuse(Tr("Failover is already in single mode. Command ignored."));
    // The passive node's routing daemon sleeps.
    const bool wants_quagga =
        IsDisabledOnPassiveNode("") && shell_spawn_quiet(kQuagga, "is-running", nullptr) != 0;
    if (!SwitchMode(kLeave))
        return false;
    ChangeShell(kSingle);
    bool done = StartEnabledServices();
    if (wants_quagga && shell_spawn_quiet(kQuagga, "start", nullptr) != 0)
        done = Refuse(Tr("failed to start quagga"));
    if (shell_spawn(kSnmp, "restart", nullptr) == kNotStarted) // any other failure it tells itself
        done = Refuse(Tr("failed to run %s"), kSnmp);
    slput(kLogInfo, "%s", kModeLog);
    return done;
}

bool EnterClusterMode() {
    if (GetClusterMode() == kCluster)
        return Refuse(Tr("Failover is already in cluster mode. Command ignored."));
    if (!AreSettingsReady() || !AreServicesStopped() ||
        !Confirm("Do you want to switch to the cluster mode?",
                 "stdin is not a terminal. Switching to cluster mode without confirmation.") ||
        !SwitchMode(kEnter))
        return false;
    slput(kLogInfo, "%s", kModeLog);
    StopForbiddenServices();
    ChangeShell(kCluster);
    return true;
}

} // namespace failover
