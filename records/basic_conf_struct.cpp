#include "records/basic_conf_struct.h"

#include "platform/console.h"
#include "platform/guards.h"
#include "platform/locks.h"
#include "platform/log.h"
#include "platform/path_list.h"

#include <algorithm>
#include <boost/algorithm/string/join.hpp>
#include <cerrno>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvanshell {
namespace {

constexpr const char* kGuardSuffix = ".crg";
constexpr const char* kDefaultSuffix = ".orig";
constexpr const char* kLockSuffix = ".lock";
constexpr int kLockTries = 500;
constexpr useconds_t kLockPause = 10000; // microseconds

bool IsSettingsSetWhole() {
    for (const std::string* file :
         {&path_list::failover_settings, &path_list::common_settings, &path_list::local_settings}) {
        if (!CheckGuardFile((*file + kGuardSuffix).c_str(), file->c_str(), nullptr))
            return false;
    }
    return true;
}

bool StartsWith(const std::string& text, const char* word, std::size_t size) {
    return strncasecmp(text.c_str(), word, size) == 0;
}

std::vector<std::string> SplitWords(const std::string& line) {
    constexpr const char* kSeparators = " \t";
    std::vector<std::string> words;
    std::size_t start = line.find_first_not_of(kSeparators);
    while (start != std::string::npos) {
        const std::size_t end = line.find_first_of(kSeparators, start);
        words.push_back(line.substr(start, end - start));
        start = line.find_first_not_of(kSeparators, end);
    }
    return words;
}

// Makes the file readable by its owner alone before a secret goes into it.
void KeepSecret(const std::string& path) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return; // the open for writing reports it
    if (fchmod(descriptor, 0600) != 0)
        shell_log_error("%s: failed to restrict access: %s", path.c_str(), std::strerror(errno));
    close(descriptor);
}

} // namespace

BasicConfStruct::BasicConfStruct(std::string file, bool guarded) : path(std::move(file)), check(guarded) {}

bool BasicConfStruct::SetFlag(const char* name, bool on) {
    flags[name] = on;
    return true;
}

bool BasicConfStruct::GetFlag(const char* name) const {
    const auto flag = flags.find(name);
    return flag != flags.end() && flag->second;
}

bool BasicConfStruct::Read() {
    if (guards_enabled && !IsSettingsSetWhole())
        return false;
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!lock.AcquireShared(settings_lock_timeout, true)) {
        shell_print_error("settings file is locked by another process, please try later");
        return false;
    }
    if (check)
        WaitForLockFile();
    ReadFile(ReadablePath());
    return true;
}

void BasicConfStruct::WaitForLockFile() const {
    const std::string lock_file = path + kLockSuffix;
    for (int i = 0; i < kLockTries; ++i) {
        if (access(lock_file.c_str(), F_OK) != 0)
            return;
        usleep(kLockPause);
    }
    shell_log_error("Lock file '%s%s' presents, ignore it...", path.c_str(), kLockSuffix);
}

// The file itself, or its default version when the file does not match its guard.
std::string BasicConfStruct::ReadablePath() const {
    if (!check || !guards_enabled)
        return path;
    try {
        PwdGen::PWDGCheckCrgOfFile(path.c_str(), (path + kGuardSuffix).c_str());
        return path;
    } catch (const std::exception&) {
        shell_log_error("File '%s' is corrupted. Using default version...", path.c_str());
        return path + kDefaultSuffix;
    }
}

void BasicConfStruct::ReadFile(const std::string& place) {
    std::ifstream input(place);
    std::string line;
    while (std::getline(input, line)) {
        if (!line.empty())
            ParseEntry(line);
    }
}

void BasicConfStruct::ParseEntry(const std::string& line) {
    Words words = SplitWords(line);
    const std::string key = !words.empty() ? words[0] : "";
    const std::string value = words.size() > 1 ? words[1] : "";
    if (ParseValue(key, value))
        return;
    words.erase(words.begin(), words.begin() + static_cast<long>(std::min<std::size_t>(words.size(), 2)));
    if (ParseLine(line, key, value, words))
        return;
    const bool on = StartsWith(value, "on", 2);
    if (on || StartsWith(value, "off", 3))
        SetFlag(key.c_str(), on);
    else
        lines.push_back(line);
}

void BasicConfStruct::WriteFlags(std::ostream& output) const {
    for (const auto& [name, on] : flags)
        output << name << '\t' << (on ? "on" : "off") << '\n';
}

void BasicConfStruct::WriteLines(std::ostream& output) const {
    for (const std::string& line : lines)
        output << line << '\n';
}

std::string BasicConfStruct::Join(const std::set<std::string>& texts, char separator) const {
    return boost::algorithm::join(texts, std::string(1, separator));
}

bool BasicConfStruct::WriteFile(bool secret) const {
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!lock.AcquireExclusive(settings_lock_timeout, true)) {
        shell_log_warning("config is locked by another process, please try again");
        return false;
    }
    if (secret)
        KeepSecret(path);
    std::ofstream output(path, std::ios::trunc);
    if (!output) {
        shell_log_error("%s: failed to open: %s", path.c_str(), std::strerror(errno));
        return false;
    }
    WriteAll(output);
    output.close();
    const bool written = static_cast<bool>(output);
    if (!written)
        shell_log_error("%s: failed to write: %s", path.c_str(), std::strerror(errno));
    const bool guarded = !check || UpdateGuardFile(path_list::settings_guard.c_str(), kOneOfSharedGuard,
                                                   path.c_str(), nullptr);
    return guarded && written;
}

} // namespace corvanshell
