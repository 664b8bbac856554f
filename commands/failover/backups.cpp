#include "commands/failover/backups.h"

#include "platform/descriptor.h"
#include "platform/guards.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "records/cluster_edit.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace failover {
namespace {

using corvanshell::ClusterBackupOf;
using corvanshell::ClusterFiles;
using corvanshell::HasClusterBackups;

constexpr std::size_t kBlock = 64 * 1024;

// With errno's reason.
bool RefuseCopy(const std::string& path) {
    return Refuse(Tr("failed to copy failover config file: %s"), path + ": " + std::strerror(errno));
}

bool WriteAll(int descriptor, const char* text, std::size_t size) {
    while (size > 0) {
        const ssize_t written = write(descriptor, text, size);
        if (written < 0 && errno != EINTR)
            return false;
        text += written > 0 ? written : 0;
        size -= written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    return true;
}

bool CopyBytes(int from, int to) {
    std::vector<char> block(kBlock);
    ssize_t size = 0;
    while ((size = read(from, block.data(), block.size())) != 0) {
        if (size < 0 && errno != EINTR)
            return false;
        if (size > 0 && !WriteAll(to, block.data(), static_cast<std::size_t>(size)))
            return false;
    }
    return true;
}

// Gives `to` the mode and owner of `from`, which must be a regular file.
bool CopyOwnership(int from, int to) {
    struct stat source = {};
    struct stat target = {};
    if (fstat(from, &source) != 0 || fstat(to, &target) != 0)
        return false;
    if (!S_ISREG(source.st_mode)) {
        errno = EINVAL;
        return false;
    }
    const bool is_foreign = source.st_uid != target.st_uid || source.st_gid != target.st_gid;
    return (!is_foreign || fchown(to, source.st_uid, source.st_gid) == 0) &&
           fchmod(to, source.st_mode & 07777) == 0;
}

// The copy gets its name when it is whole and on the disk.
bool CopyFile(const std::string& from, const std::string& to) {
    const std::string unfinished = to + ".tmp";
    const Descriptor source(open(from.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (source.Get() < 0)
        return RefuseCopy(from);
    (void)unlink(unfinished.c_str()); // what a killed run left
    const Descriptor target(open(unfinished.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (target.Get() >= 0 && CopyOwnership(source.Get(), target.Get()) &&
        CopyBytes(source.Get(), target.Get()) && fsync(target.Get()) == 0 &&
        rename(unfinished.c_str(), to.c_str()) == 0)
        return true;
    (void)RefuseCopy(to);
    (void)unlink(unfinished.c_str());
    return false;
}

// Where a file stands that may be a link.
std::string TargetOf(const std::string& file) {
    const std::unique_ptr<char, void (*)(void*)> target(realpath(file.c_str(), nullptr), std::free);
    return target ? target.get() : file;
}

// Whether an earlier edit was killed: its backups are the last text that had a guard.
bool IsEditBrokenOff() {
    const std::string& file = path_list::failover_settings;
    return HasClusterBackups() &&
           !corvanshell::CheckGuardFile((file + ".crg").c_str(), file.c_str(), nullptr);
}

bool PutBack(const std::string& backup, const std::string& target) {
    if (rename(backup.c_str(), target.c_str()) == 0)
        return true;
    if (errno != EXDEV) // the link leads to another file system
        return RefuseCopy(target);
    if (!CopyFile(backup, target))
        return false;
    (void)unlink(backup.c_str());
    return true;
}

} // namespace

bool Backups::Make() const {
    if (IsEditBrokenOff())
        return true;
    for (const std::string& file : ClusterFiles()) {
        if (!CopyFile(file, ClusterBackupOf(file))) {
            Remove();
            return false;
        }
    }
    return true;
}

bool Backups::Restore() const {
    bool done = true;
    for (const std::string& file : ClusterFiles())
        done = PutBack(ClusterBackupOf(file), TargetOf(file)) && done;
    return done;
}

void Backups::Remove() const {
    for (const std::string& file : ClusterFiles()) {
        if (access(file.c_str(), F_OK) == 0)
            (void)unlink(ClusterBackupOf(file).c_str());
    }
}

std::string Backups::TextFile() const {
    return ClusterBackupOf(path_list::failover_settings);
}

} // namespace failover
