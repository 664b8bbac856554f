#include "commands/dgd/dgd_config.h"

#include "commands/dgd/words.h"
#include "commands/vtysh/daemon.h"
#include "commands/vtysh/saved_file.h"
#include "front/helpers/settings_lock.h"
#include "platform/path_list.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <iterator>

namespace dgd {
namespace {

struct Setting {
    const char* word;
    int DgdConfig::*value;
};

constexpr Setting kSettings[] = {
    {"check-interval", &DgdConfig::check_interval},
    {"wait-timeout", &DgdConfig::wait_timeout},
    {"fail-count", &DgdConfig::fail_count},
};

int ToInt(const std::string& text) {
    return static_cast<int>(std::clamp<long>(std::strtol(text.c_str(), nullptr, 10), INT_MIN, INT_MAX));
}

// -1 when there is no such level.
int LevelIndex(const std::string& name) {
    const auto level = std::find(std::begin(kSyslogLevels), std::end(kSyslogLevels), name);
    return level == std::end(kSyslogLevels) ? -1 : static_cast<int>(level - std::begin(kSyslogLevels));
}

bool FirstLineIs(const std::string& command, const char* text) {
    vtysh::Lines lines;
    return vtysh::Ask(command, lines) && !lines.empty() && lines.front() == text;
}

} // namespace

bool ConfigSectionHas(const std::string& section, const std::string& word) {
    vtysh::Lines lines;
    const auto is_header = [&](const std::string& line) {
        return line.starts_with(section) && (line.size() == section.size() || line[section.size()] == ' ');
    };
    return vtysh::ReadBlock(vtysh::kDgdd, is_header, lines, vtysh::Failure::kSilent) &&
           (word.empty() || std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
                return vtysh::HoldsWords(line, word);
            }));
}

// Keeps what was refused.
bool DgdConfig::Took(bool done) {
    has_refused_ = has_refused_ || !done;
    return done;
}

bool DgdConfig::Ask(const std::string& question, Lines& lines) {
    return !has_refused_ && Took(vtysh::Ask(vtysh::kDgdd, question, lines));
}

// Without the daemon there is the file alone.
bool DgdConfig::AskConfiguration(Lines& lines) {
    return running ? Ask("show running-config", lines)
                   : !has_refused_ && Took(vtysh::AskSaved(vtysh::kDgdd, lines));
}

bool DgdConfig::Load() {
    enabled = FirstLineIs("/sbin/dgd.sh enabled", "yes");
    running = FirstLineIs("/sbin/dgd.sh status", "running");
    lock_tool::FileLock lock(path_list::settings_lock);
    Lines logging;
    Lines configuration;
    if (!Took(LockForChange(lock)) || (running && !Ask("show logging", logging)) ||
        !AskConfiguration(configuration))
        return false;
    if (running)
        TakeLogging(logging);
    TakeConfiguration(configuration);
    return true;
}

void DgdConfig::TakeConfiguration(const Lines& lines) {
    next_hop_count = 0;
    rule_count = 0;
    names.clear();
    if (!running)
        syslog_level = -1;
    for (const std::string& line : lines) {
        const Words words = SplitWords(line);
        if (words.size() < 2)
            continue;
        if (words[0] == "dgd" && words.size() > 2) {
            for (const Setting& setting : kSettings) {
                if (words[1] == setting.word)
                    this->*setting.value = ToInt(words[2]);
            }
        } else if (words[0] == "log" && words[1] == "syslog") {
            syslog_level = LevelIndex(JoinWords(words, 2));
        } else if (words[0] == "next-hop" || words[0] == "dyn-next-hop") {
            names.insert(words[1]);
            ++next_hop_count;
        } else if (words[0] == "dgd-rule") {
            ++rule_count;
        }
    }
}

// Syslog logging: level informational, facility daemon
void DgdConfig::TakeLogging(const Lines& lines) {
    for (const std::string& line : lines) {
        if (!line.starts_with("Syslog"))
            continue;
        const Words words = SplitWords(line, " ,\t\r");
        auto word = std::find(words.begin(), words.end(), "logging:");
        word = std::find(word, words.end(), "level");
        syslog_level = std::distance(word, words.end()) > 1 ? LevelIndex(*std::next(word)) : -1;
    }
}

// /usr/bin/vtysh -d dgdd -c "configure terminal" -c "no dgd-rule r" -c "end" -c "write file"
bool DgdConfig::Change(const std::vector<std::string>& parts) {
    if (has_refused_)
        return false;
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!Took(LockForChange(lock) && vtysh::Configure(vtysh::kDgdd, parts)))
        return false;
    lock.Release(); // the loading takes it itself
    return Load();
}

bool DgdConfig::Set(const std::string& setting) {
    return Change({setting});
}

std::string DgdConfig::ShowConfiguration() const {
    const bool logs = syslog_level >= 0;
    return std::string(running ? "DGD is running\n" : "DGD is stopped\n") +
           (enabled ? "DGD autostart is on\n" : "DGD autostart is off\n") +
           "Response-time = " + std::to_string(wait_timeout) +
           "\nInterval-time = " + std::to_string(check_interval) +
           "\nRetries-count = " + std::to_string(fail_count) +
           "\nSyslog-level = " + (logs ? kSyslogLevels[syslog_level] : "disabled") + " (" +
           std::to_string(syslog_level) + ")\nNext-hop configured = " + std::to_string(next_hop_count) +
           "\nRules configured = " + std::to_string(rule_count) + "\n";
}

} // namespace dgd
