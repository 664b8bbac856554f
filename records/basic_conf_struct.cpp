#include "records/basic_conf_struct.h"

#include "front/helpers/settings_lock.h"
#include "platform/guards.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "platform/settings_file.h"
#include "records/cluster_edit.h"

#include <algorithm>
#include <boost/algorithm/string/join.hpp>
#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <strings.h>
#include <system_error>
#include <unistd.h>

namespace corvanshell {
namespace {

constexpr const char* kGuardSuffix = ".crg";
constexpr const char* kDefaultSuffix = ".orig";
constexpr const char* kLockSuffix = ".lock";
constexpr const char* kUnreadSuffix = ".unread";
constexpr int kLockTries = 500;
constexpr useconds_t kLockPause = 10000; // microseconds

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

bool BasicConfStruct::IsSetWhole() {
    for (const std::string* file :
         {&path_list::failover_settings, &path_list::common_settings, &path_list::local_settings}) {
        if (CheckGuardFile((*file + kGuardSuffix).c_str(), file->c_str(), nullptr))
            continue;
        obstacle = *file + gettext(" does not match its guard");
        if (file == &path_list::failover_settings)
            obstacle += DescribeClusterEdit();
        return false;
    }
    return true;
}

bool BasicConfStruct::Read() {
    reading = Reading::kRefused;
    if (guards_enabled && !IsSetWhole())
        return false;
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!LockForReading(lock)) {
        obstacle = errno == EWOULDBLOCK ? gettext("locked by another process") : std::strerror(errno);
        return false;
    }
    try {
        ReadLocked();
    } catch (const std::system_error& error) {
        obstacle = error.code().message();
        reading = Reading::kRefused;
    }
    return reading != Reading::kRefused;
}

void BasicConfStruct::ReadLocked() {
    if (check)
        WaitForLockFile();
    const bool matches = !check || !guards_enabled || MatchesGuard();
    reading = Reading::kCut; // unless the end is reached
    ReadFile(matches ? path : path + kDefaultSuffix);
    reading = matches ? Reading::kWhole : Reading::kDefault;
}

bool BasicConfStruct::CheckRead() const {
    return IsWhole() || Refuse(Tr("%s: failed to read settings: %s"), path, obstacle);
}

void BasicConfStruct::WaitForLockFile() const {
    const std::string lock_file = path + kLockSuffix;
    for (int i = 0; i < kLockTries; ++i) {
        if (access(lock_file.c_str(), F_OK) != 0)
            return;
        usleep(kLockPause);
    }
    LogError("Lock file '%s%s' presents, ignore it...", path, kLockSuffix);
}

// Throws std::system_error when file or guard can't be read.
bool BasicConfStruct::MatchesGuard() const {
    try {
        PwdGen::PWDGCheckCrgOfFile(path.c_str(), (path + kGuardSuffix).c_str());
        return true;
    } catch (const std::system_error&) {
        throw;
    } catch (const std::exception&) {
        LogError("File '%s' is corrupted. Using default version...", path);
        return false;
    }
}

void BasicConfStruct::ReadFile(const std::string& place) {
    std::ifstream input(place);
    if (!input && errno != ENOENT && errno != ENOTDIR)
        throw std::system_error(errno, std::generic_category());
    std::string line;
    for (std::size_t number = 1; std::getline(input, line); ++number) {
        obstacle = gettext("line ") + std::to_string(number); // should it end the read
        if (!line.empty())
            ParseEntry(line);
    }
    if (input.bad())
        throw std::system_error(EIO, std::generic_category());
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

// Keeps what the record does not hold. A file that is not there holds nothing.
bool BasicConfStruct::KeepUnread() const {
    const std::string kept = path + kUnreadSuffix;
    std::error_code error;
    if (reading == Reading::kWhole || !std::filesystem::exists(path, error))
        return true;
    std::filesystem::copy_file(path, kept, std::filesystem::copy_options::overwrite_existing, error);
    if (error)
        return RefuseInLog("%s: failed to keep what was not read: %s", path, error.message());
    LogError("%s: what was not read of it is kept as %s", path, kept);
    return true;
}

bool BasicConfStruct::WriteFile(bool secret) {
    if (reading == Reading::kRefused)
        return RefuseAndLog("%s: not written, as it was not read: %s", path, obstacle);
    if (!KeepUnread())
        return false;
    std::ostringstream text;
    WriteAll(text);
    // The guard of a file that was cut short must not match it.
    if (!WriteSettingsFile(path, text.view(), secret))
        return RefuseInLog("%s: failed to write: %s", path, std::strerror(errno));
    reading = Reading::kWhole; // from now on the file holds what the record does
    return !check ||
           UpdateGuardFile(path_list::settings_guard.c_str(), kOneOfSharedGuard, path.c_str(), nullptr);
}

} // namespace corvanshell
