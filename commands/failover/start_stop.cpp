#include "commands/failover/start_stop.h"

#include "commands/failover/addresses.h"
#include "platform/locks.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <cerrno>
#include <cstring>

namespace failover {
namespace {

constexpr const char* kProgram = "/sbin/failover";

struct Control {
    const char* command;
    const char* log;
    const char* arguments[2];
};

// By StartForm.
constexpr Control kStarts[] = {
    {"failover start", "command: failover start", {"start", nullptr}},
    {"failover start active", "command: failover start active", {"start", "active"}},
    {"failover start passive", "command: failover start passive", {"start", "passive"}},
};
constexpr Control kStop = {"failover stop", "<F_STP> Command: failover stop", {"stop", nullptr}};

// By RouterAction.
constexpr const char* kRouterLogs[] = {
    "<F_SH_RC> Command failover show router-config",
    "<FROUTER_IP> Command failover config router ip",
    "<FROUTER_USER> Command failover config router user",
    "<FROUTER_ACT> Command failover config router active-config",
    "<FROUTER_PASS> Command failover config router passive-config",
};

// The lock is held while the program runs.
bool Run(const Control& control) {
    lock_tool::FileLock lock(path_list::critops_lock);
    if (!lock.AcquireExclusive(0, false))
        return errno == EWOULDBLOCK
                   ? Refuse(Tr("cannot run '%s' because another critical operation has been running"),
                            control.command)
                   : Refuse(Tr("%s can't be locked: %s"), path_list::critops_lock, std::strerror(errno));
    const int status = shell_spawn(kProgram, control.arguments[0], control.arguments[1], nullptr);
    return status != kNotStarted || Refuse(Tr("failed to run %s"), kProgram);
}

} // namespace

bool Start(StartForm form) {
    const Control& control = kStarts[static_cast<int>(form)];
    LogInfo("%s", control.log);
    return ValidateFailoverAddresses() ? Run(control) : Refuse(Tr("failed to start failover"));
}

bool Stop() {
    LogInfo("%s", kStop.log);
    return Run(kStop);
}

void LogRouterAction(RouterAction action) {
    slput(kLogInfo, "%s", kRouterLogs[static_cast<int>(action)]);
}

} // namespace failover
