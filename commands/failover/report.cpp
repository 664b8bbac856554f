#include "commands/failover/report.h"

#include "front/probes/cluster.h"
#include "front/probes/system.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "platform/shell_tree.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <libintl.h>
#include <stdexcept>
#include <string_view>

namespace failover {
namespace {

using corvanshell::DateTime;

constexpr const char* kProgram = "/sbin/failover";
constexpr const char* kConnectionDaemon = "/sbin/conntrackd";
constexpr const char* kSynchronised = "^syncconnections\\s*=\\s*[yY][eE][sS]\\s*\\(#.*\\)\\?$";

bool IsDaemonAlive() {
    const pid_t pid = read_pid("failoverd", true);
    return pid > 0 && check_pid(pid);
}

bool IsCalendarDate(const DateTime& moment) {
    using namespace std::chrono;
    constexpr int kMonths = 12;
    constexpr int kDays = 31;
    if (moment.month < 1 || moment.month > kMonths || moment.day < 1 || moment.day > kDays)
        return false;
    return year_month_day(year(moment.year), month(static_cast<unsigned>(moment.month)),
                          day(static_cast<unsigned>(moment.day)))
        .ok();
}

DateTime Now() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    if (localtime_r(&now, &local) == nullptr)
        throw std::runtime_error("could not convert calendar time to local time");
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

bool HasForm(const std::string& text, std::string_view form) {
    return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char letter, char place) {
        return place == '0' ? letter >= '0' && letter <= '9' : letter == place;
    });
}

bool SplitDateTime(const std::string& text, DateTime& moment) {
    return HasForm(text, "00.00.0000-00:00:00") &&
           std::sscanf(text.c_str(), "%2d.%2d.%4d-%2d:%2d:%2d", &moment.day, &moment.month, &moment.year,
                       &moment.hour, &moment.minute, &moment.second) == 6;
}

} // namespace

bool ShowInfo() {
    LogInfo("<F_INF>  Command: failover show info");
    if (IsDaemonAlive())
        return BaseExec::run(std::string(kProgram) + " info") == 0;
    if (Shell::Get().Mode() == 0)
        PrintInfo(Tr("Failover is in single mode"));
    else
        PrintInfo(Tr("Failover is in cluster mode"));
    return true;
}

bool ShowConfig() {
    LogInfo("<F_SH_CONF> Command failover show info"); // kept: logs are searched for it
    return BaseExec::run("/sbin/textpager.sh /etc/failover.ini") == 0;
}

bool ShowSyncConnections() {
    LogInfo("command: failover show sync-connections");
    if (shell_spawn_quiet("/bin/grep", "-q", kSynchronised, "/etc/failover.ini", nullptr) != 0) {
        PrintInfo(Tr("No connections to synchronize due to disabled synchronization."));
        return true;
    }
    if (!IsServiceRunning(kConnectionDaemon))
        return Refuse(
            Tr("Failed to get synchronized connections count since daemon is not configured/started."));
    // The internal cache holds the node's own connections, the external one those of the other node.
    const std::string line =
        std::string(kConnectionDaemon) + (IsClusterActive() ? " -i" : " -e") + " | wc -l";
    std::printf("%s", gettext("Synchronized connections count\t"));
    std::fflush(stdout);
    return shell_spawn("/bin/sh", "-c", line.c_str(), nullptr) == 0 ||
           Refuse(Tr("Failed to get connections to synchronize."));
}

bool ParseDateTime(const std::string& text, DateTime& moment) {
    DateTime parsed;
    if (!SplitDateTime(text, parsed) || parsed.hour > 23 || parsed.minute > 59 || parsed.second > 59)
        return Refuse(Tr("wrong date and time: expected <day>.<month>.<year>-<hour>:<minute>:<second>"));
    moment = parsed;
    return true;
}

bool View(const DateTime& begin, const DateTime& end) {
    if (!IsCalendarDate(begin) || !IsCalendarDate(end))
        return Refuse(Tr("Day of month is not valid for year"));
    const std::string from = corvanshell::ptime_to_dmyhms(begin);
    const std::string to = corvanshell::ptime_to_dmyhms(end);
    LogInfo("<F_VIEW> Command: failover view -b %s -e %s", from, to);
    const DateTime now = Now();
    if (begin > now || end > now)
        return Refuse(Tr("Specified date/time is in the future."));
    if (begin >= end)
        return Refuse(Tr("Begin time must be earlier than an end time."));
    const int status = shell_spawn(kProgram, "view", "-b", from.c_str(), "-e", to.c_str(), nullptr);
    return status == kNotStarted ? Refuse(Tr("failed to run %s"), kProgram) : status == 0;
}

} // namespace failover
