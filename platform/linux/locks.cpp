#include "platform/locks.h"

#include "platform/messages.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::chrono::milliseconds poll_interval{10};

bool may_wait = true;

// The error is still the caller's behind it.
void LogFailure(const char* what, const std::string& path) {
    const int error = errno;
    LogError("%s: failed to %s: %s", path, what, std::strerror(error));
    errno = error;
}

// Whoever owns a lock file can hold its lock for as long as he likes.
bool IsOurs(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && (status.st_uid == 0 || status.st_uid == ::geteuid());
}

int OpenLockFile(const std::string& path) {
    constexpr int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    int descriptor = ::open(path.c_str(), flags, 0600);
    if (descriptor < 0 && errno == ENOENT) {
        std::error_code error; // the second open tells why
        std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
        descriptor = ::open(path.c_str(), flags, 0600);
    }
    if (descriptor < 0)
        LogFailure("open lock file", path);
    else if (!IsOurs(descriptor)) {
        ::close(descriptor);
        descriptor = -1;
        errno = EPERM;
        LogError("%s: the lock file belongs to another user", path);
    }
    return descriptor;
}

} // namespace

namespace lock_tool {

FileLock::FileLock(std::string path) : path_(std::move(path)) {}

FileLock::~FileLock() {
    Release();
}

bool FileLock::AcquireShared(long timeout, bool wait) {
    return Acquire(LOCK_SH, timeout, wait);
}

bool FileLock::AcquireExclusive(long timeout, bool wait) {
    return Acquire(LOCK_EX, timeout, wait);
}

void FileLock::Release() {
    if (descriptor_ >= 0)
        ::close(std::exchange(descriptor_, -1));
}

bool FileLock::Acquire(int operation, long timeout, bool wait) {
    using Clock = std::chrono::steady_clock;
    Release();
    descriptor_ = OpenLockFile(path_);
    if (descriptor_ < 0)
        return false;
    const auto start = Clock::now();
    const std::chrono::seconds patience(wait && may_wait ? timeout : 0);
    while (::flock(descriptor_, operation | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            LogFailure("lock", path_);
        else if (Clock::now() - start < patience) {
            std::this_thread::sleep_for(poll_interval);
            continue;
        }
        const int error = errno == EINTR ? EWOULDBLOCK : errno;
        Release();
        errno = error;
        return false;
    }
    return true;
}

void NeverWait() {
    may_wait = false;
}

} // namespace lock_tool

namespace POSIX_File {

namespace {

// The lock belongs to the open file description: a plain record lock would be lost as soon as the process
// closed any other descriptor of the file.
bool SetLock(int descriptor, short type, int command) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    int result = 0;
    do
        result = ::fcntl(descriptor, command, &lock);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

} // namespace

SoftLock::SoftLock(int descriptor, short type, bool lock_now) : descriptor_(descriptor) {
    if (lock_now)
        held_ = SetLock(descriptor_, type, F_OFD_SETLK);
}

SoftLock::~SoftLock() {
    Unlock();
}

bool SoftLock::Lock(short type, bool wait) {
    // A refused change of a held lock leaves the lock as it was.
    const bool granted = SetLock(descriptor_, type, wait ? F_OFD_SETLKW : F_OFD_SETLK);
    held_ = held_ || granted;
    return granted;
}

void SoftLock::Unlock() {
    if (std::exchange(held_, false))
        SetLock(descriptor_, F_UNLCK, F_OFD_SETLK);
}

} // namespace POSIX_File
