// Switching the dead gateway detection, its settings and their report.

#include "commands/dgd/command_frame.h"
#include "commands/dgd/commands.h"
#include "platform/messages.h"
#include "platform/processes.h"

#include <iterator>

namespace dgd {
namespace {

constexpr long kDefaultLevel = 3;
constexpr int kDefaultValue = 3;

// A number among the settings.
struct Setting {
    const char* command; // as it is logged, in front of the number
    const char* log_end;
    const char* word; // of the daemon
    unsigned long highest;
    format::Translated out_of_range;
};

constexpr format::Translated kOutOf120 = Tr("DGD command failed: value is out of range 1..120.");
constexpr Setting kResponseTime{"response-time ", " ", "wait-timeout", 120, kOutOf120};
constexpr Setting kIntervalTime{"interval-time ", "", "check-interval", 120, kOutOf120};
constexpr Setting kRetriesCount{"retries-count ", "", "fail-count", 10,
                                Tr("DGD command failed: value is out of range 1..10.")};

std::string SettingLine(const Setting& setting, unsigned long value) {
    return std::string("dgd ") + setting.word + " " + std::to_string(value);
}

std::string SyslogLine(long level) {
    return level < 0 ? "no log syslog" : std::string("log syslog ") + kSyslogLevels[level];
}

bool SetNumber(const Setting& setting, unsigned long value) {
    return RunCommand({.log = std::string("command: inet dgd configuration ") + setting.command +
                              std::to_string(value) + setting.log_end,
                       .run = [&](DgdConfig& config) {
                           return value < 1 || value > setting.highest
                                      ? Refused(setting.out_of_range)
                                      : Sent(config.Set(SettingLine(setting, value)));
                       }});
}

Outcome SwitchMode(const DgdConfig& config, bool on) {
    if (config.enabled == on) {
        PrintInfo("%s", on ? gettext("DGD is already enabled.") : gettext("DGD is already disabled."));
        return Outcome::kDone;
    }
    return Sent(BaseExec::run(on ? "/sbin/dgd.sh start" : "/sbin/dgd.sh stop") == 0);
}

// A value that fails leaves those before it set.
Outcome ResetAll(DgdConfig& config) {
    if (shell_get_user_confirmation(gettext("Are you sure to reset DGD settings to default values?")) == 0) {
        PrintInfo(Tr("You have cancelled dgd configuration default command."));
        return Outcome::kRefused;
    }
    for (const Setting& setting : {kResponseTime, kIntervalTime, kRetriesCount}) {
        if (!config.Set(SettingLine(setting, kDefaultValue)))
            return Outcome::kFailed;
    }
    return Sent(config.Set(SyslogLine(kDefaultLevel)));
}

} // namespace

bool SetMode(const std::string& mode) {
    return RunCommand({.log = "command: inet dgd mode " + mode,
                       .needs = Needs::kNothing,
                       .run = [&](DgdConfig& config) { return SwitchMode(config, mode == "on"); }});
}

bool SetResponseTime(unsigned long seconds) {
    return SetNumber(kResponseTime, seconds);
}

bool SetIntervalTime(unsigned long seconds) {
    return SetNumber(kIntervalTime, seconds);
}

bool SetRetriesCount(unsigned long count) {
    return SetNumber(kRetriesCount, count);
}

bool SetSyslogLevel(long level) {
    return RunCommand({.log = "command: inet dgd configuration syslog-level " + std::to_string(level),
                       .run = [&](DgdConfig& config) {
                           return level >= std::ssize(kSyslogLevels)
                                      ? Refused(Tr("DGD command failed: value is out of range 0..4."))
                                      : Sent(config.Set(SyslogLine(level)));
                       }});
}

bool SetDefaults() {
    return RunCommand({.log = "command: inet dgd configuration default", .run = ResetAll});
}

bool ShowConfiguration() {
    return RunCommand({.log = "command: inet show dgd configuration", .run = [](DgdConfig& config) {
                           const std::string text = config.ShowConfiguration();
                           return Show(config, text.empty() ? gettext("DGD configuration is empty.") : text);
                       }});
}

} // namespace dgd
