#include "reference/routing/store.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace reference::routing {
namespace {

const std::string kState = "/run/quagga/";
const std::string kConfigurations = "/etc/quagga/";

std::string RunningPath(const std::string& daemon) {
    return kState + daemon + ".running";
}

std::string TablesPath(const std::string& daemon) {
    return kState + daemon + ".tables";
}

std::string SavedPath(const std::string& daemon) {
    return kConfigurations + daemon + ".conf";
}

bool WriteAll(int descriptor, const std::string& text) {
    for (std::size_t written = 0; written < text.size();) {
        const ssize_t count = write(descriptor, text.data() + written, text.size() - written);
        if (count < 0)
            return false;
        written += static_cast<std::size_t>(count);
    }
    return true;
}

bool IsLockedByOther(const char* path) {
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    const bool locked = file >= 0 && flock(file, LOCK_SH | LOCK_NB) != 0;
    if (file >= 0)
        close(file);
    return locked;
}

} // namespace

Store::Store(const std::string& daemon) : daemon_(daemon) {
    mkdir(kState.c_str(), 0755);
    mkdir(kConfigurations.c_str(), 0755);
    lock_ = open((kState + "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (lock_ >= 0)
        flock(lock_, LOCK_EX);
}

Store::~Store() {
    if (lock_ >= 0)
        close(lock_);
}

bool Store::IsRunning() const {
    if (daemon_ == "dgdd")
        return HasRunning() && IsLockedByOther(kDgddPidFile);
    return access((kState + daemon_ + ".down").c_str(), F_OK) != 0;
}

bool Store::HasRunning() const {
    return access(RunningPath(daemon_).c_str(), F_OK) == 0;
}

std::optional<std::string> Store::Saved() const {
    return ReadWhole(SavedPath(daemon_));
}

std::optional<std::string> Store::Running() const {
    return ReadWhole(RunningPath(daemon_));
}

std::optional<std::string> Store::Tables() const {
    return ReadWhole(TablesPath(daemon_));
}

bool Store::SetSaved(const std::string& text) const {
    return ReplaceFile(SavedPath(daemon_), text);
}

bool Store::SetRunning(const std::string& text, const std::string& tables) const {
    return (tables.empty() || ReplaceFile(TablesPath(daemon_), tables)) &&
           ReplaceFile(RunningPath(daemon_), text);
}

bool ReplaceFile(const std::string& path, const std::string& text) {
    const std::string temporary = path + ".new";
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0)
        return false;
    const bool written = WriteAll(file, text) && fsync(file) == 0;
    const bool closed = close(file) == 0;
    if (written && closed && rename(temporary.c_str(), path.c_str()) == 0)
        return true;
    unlink(temporary.c_str());
    return false;
}

std::optional<std::string> ReadWhole(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0 && errno == ENOENT)
        return "";
    std::string text;
    char buffer[65536];
    ssize_t count = -1;
    while (file >= 0 && (count = read(file, buffer, sizeof buffer)) > 0)
        text.append(buffer, static_cast<std::size_t>(count));
    if (count < 0)
        std::fprintf(stderr, "%s: failed to read: %s\n", path.c_str(), std::strerror(errno));
    if (file >= 0)
        close(file);
    return count < 0 ? std::nullopt : std::optional(text);
}

} // namespace reference::routing
