#include "platform/guards.h"

#include "digest.h"
#include "files.h"
#include "guard_file.h"

#include "platform/locks.h"
#include "platform/messages.h"
#include "platform/path_list.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using linux_platform::Guard;
using linux_platform::GuardLine;
using Files = std::vector<std::string>;

enum Mode { kOneFile = 0, kOneOfSeveral = 1, kSeveralFiles = 3 };

// The name under which a guard knows a file: absolute, and resolved no further than "." and "..", since a
// settings file that is a link is known by the name that its readers use.
std::string GuardedName(const std::string& file) {
    std::error_code error; // a name that can't be resolved stays as it is, and opening it tells why
    fs::path path = fs::absolute(file, error);
    if (std::find(path.begin(), path.end(), "..") != path.end()) {
        const fs::path folder = fs::weakly_canonical(path.parent_path(), error);
        path = error ? path : folder / path.filename();
    }
    return path.empty() ? file : path.lexically_normal().string();
}

Files Collect(std::va_list arguments) {
    Files files;
    while (const char* file = va_arg(arguments, const char*))
        files.push_back(GuardedName(file));
    return files;
}

// Nothing when the file does not exist; throws when it can't be read.
std::optional<std::string> DigestOf(const std::string& path) {
    const Descriptor file = linux_platform::OpenRegular(path);
    if (file.IsOpen())
        return linux_platform::Sha256Of(file.Get());
    if (errno == ENOENT || errno == ENOTDIR)
        return std::nullopt;
    throw std::system_error(errno, std::generic_category(), path);
}

bool Matches(const GuardLine& line) {
    try {
        return DigestOf(line.path) == line.digest;
    } catch (const std::exception& error) {
        LogError("%s: failed to check: %s", line.path, error.what());
        return false;
    }
}

// The first of the files that is not what the guard says of it, or null.
const std::string* FindMismatch(const std::string& guard_path, const Files& files) {
    const Guard guard = linux_platform::ReadGuard(guard_path);
    if (guard.damaged)
        return nullptr;
    const auto file = std::find_if(files.begin(), files.end(), [&](const std::string& path) {
        const GuardLine* line = guard.find(path);
        return line && !Matches(*line);
    });
    return file == files.end() ? nullptr : &*file;
}

// Readers look for the guard of the two records beside them, and writers renew the shared one.
void LinkRecordGuards(const Files& files) {
    for (const std::string& file : files) {
        const bool is_record = file == path_list::local_settings || file == path_list::common_settings;
        const std::string link = file + ".crg";
        if (is_record && ::access(file.c_str(), F_OK) == 0 &&
            ::symlink(path_list::settings_guard.c_str(), link.c_str()) != 0 && errno != EEXIST)
            throw std::system_error(errno, std::generic_category(), "failed to make the link " + link);
    }
}

void UpdateGuard(const std::string& path, int mode, const Files& files) {
    if (mode != kOneFile && mode != kOneOfSeveral && mode != kSeveralFiles)
        throw std::invalid_argument("unknown mode " + std::to_string(mode));
    Guard guard;
    if (mode != kOneFile) {
        guard = linux_platform::ReadGuard(path);
        if (guard.damaged)
            LogWarning("%s: guard is damaged, its readable lines are kept", path);
    }
    for (const std::string& file : files) {
        if (auto digest = DigestOf(file))
            guard.set(file, *std::move(digest));
        else
            guard.erase(file);
    }
    if (mode != kOneFile && path == path_list::settings_guard)
        LinkRecordGuards(files);
    linux_platform::WriteGuard(path, guard.lines);
}

} // namespace

namespace corvanshell {

bool UpdateGuardFile(const char* guard, int mode, ...) {
    std::va_list arguments;
    va_start(arguments, mode);
    const Files files = Collect(arguments);
    va_end(arguments);
    try {
        UpdateGuard(GuardedName(guard), mode, files);
        return true;
    } catch (const std::exception& error) {
        return RefuseInLog("%s: failed to update guard: %s", guard, error.what());
    }
}

bool CheckGuardFile(const char* guard, ...) {
    std::va_list arguments;
    va_start(arguments, guard);
    const Files files = Collect(arguments);
    va_end(arguments);
    if (!FindMismatch(guard, files))
        return true;
    // A writer may stand between its file and its guard. A mismatch that outlives the wait counts also
    // when the lock is not granted.
    lock_tool::FileLock lock(path_list::settings_lock);
    static_cast<void>(lock.AcquireShared(settings_lock_timeout, true));
    const std::string* file = FindMismatch(guard, files);
    if (file)
        LogError("%s: the file does not match its guard %s", *file, guard);
    return !file;
}

} // namespace corvanshell

namespace PwdGen {

void PWDGCheckCrgOfFile(const char* file, const char* guard_path) {
    const std::string name = GuardedName(file);
    const Guard guard = linux_platform::ReadGuard(guard_path);
    if (guard.error != 0)
        throw std::system_error(guard.error, std::generic_category(), guard_path);
    if (guard.damaged)
        throw std::runtime_error(std::string(guard_path) + ": guard is damaged");
    const GuardLine* line = guard.find(name);
    const auto digest = DigestOf(name);
    if (digest.has_value() != (line != nullptr) || (line && *digest != line->digest))
        throw std::runtime_error(name + ": the file does not match its guard " + guard_path);
}

} // namespace PwdGen

namespace CHCRG {

void SaveCrgToFile(const char* file, const char* guard) {
    const std::string name = GuardedName(file);
    auto digest = DigestOf(name);
    if (!digest)
        throw std::system_error(ENOENT, std::generic_category(), name);
    linux_platform::WriteGuard(GuardedName(guard), {{*std::move(digest), name}});
}

} // namespace CHCRG
