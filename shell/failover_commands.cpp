#include "commands/failover/address_check.h"
#include "commands/failover/edit.h"
#include "commands/failover/mode.h"
#include "commands/failover/report.h"
#include "commands/failover/start_stop.h"
#include "shell/families.h"

namespace shell {
namespace {

using namespace failover;
using Text = const std::string&;

// The router of the pair is configured elsewhere: the command itself notes in the log that it was given.
template <RouterAction action>
constexpr auto kLog = [] {
    LogRouterAction(action);
    return true;
};

template <StartForm form>
constexpr auto kStart = [] { return Start(form); };

bool ViewBetween(Text begin_text, Text end_text) {
    corvanshell::DateTime begin;
    corvanshell::DateTime end;
    return ParseDateTime(begin_text, begin) && ParseDateTime(end_text, end) && View(begin, end);
}

// In single mode there is nothing to start, but its settings can be made.
constexpr Command kCommands[] = {
    {"failover", "the cluster of two appliances"},
    {"failover start", "checks the active addresses and starts the daemon", kStart<StartForm::kPlain>,
     kInCluster | kOwnLock},
    {"failover start active", "starts the daemon as the active node", kStart<StartForm::kActive>,
     kInCluster | kOwnLock},
    {"failover start passive", "starts the daemon as the passive node", kStart<StartForm::kPassive>,
     kInCluster | kOwnLock},
    {"failover stop", "stops the daemon", kCall<&Stop>, kInCluster | kOwnLock},
    {"failover show", "what the cluster does"},
    {"failover show info", "shows the daemon's state or, when it does not run, the mode", kCall<&ShowInfo>,
     kShows},
    {"failover show config", "shows the cluster's settings", kCall<&ShowConfig>, kShows},
    {"failover show router-config", "notes in the log that the router's settings are looked at",
     kLog<RouterAction::kShowConfig>, kShows | kInCluster},
    {"failover show sync-connections",
     "counts the connections that the node holds for the other one, or has got from it",
     kCall<&ShowSyncConnections>, kShows | kInCluster},
    {"failover show active-addresses",
     "shows on the passive node which machines answer for the active addresses", kCall<&CheckActiveAddresses>,
     kShows | kInCluster},
    {"failover view -b", "when the time begins"},
    {"failover view -b <moment> -e <moment>", "shows the cluster's log of a time that is over, in local time",
     kCall<&ViewBetween>, kShows},
    {"failover config", "settings of the cluster"},
    {"failover config router", "settings of the router of the pair"},
    {"failover config router ip", "notes in the log that the router's address is set",
     kLog<RouterAction::kIp>, kShows | kInCluster},
    {"failover config router user", "notes in the log that the router's user is set",
     kLog<RouterAction::kUser>, kShows | kInCluster},
    {"failover config router active-config", "notes in the log that the active node's router is set",
     kLog<RouterAction::kActiveConfig>, kShows | kInCluster},
    {"failover config router passive-config", "notes in the log that the passive node's router is set",
     kLog<RouterAction::kPassiveConfig>, kShows | kInCluster},
    {"failover config edit",
     "opens the cluster's settings in the editor, checks the addresses and renews the guard",
     kCall<&EditConfig>, kOwnLock},
    {"failover config mode single", "leaves the cluster and starts the services that were forbidden in it",
     kCall<&EnterSingleMode>, kInCluster},
    {"failover config mode cluster", "enters the cluster, when nothing that it forbids is enabled",
     kCall<&EnterClusterMode>, kInSingle},
};

} // namespace

std::span<const Command> FailoverCommands() {
    return kCommands;
}

} // namespace shell
