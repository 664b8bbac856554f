#pragma once

#include <string>

// Locks between processes.

namespace lock_tool {

// A lock on a path, created when absent, and refused when it belongs to another user than root. One object
// holds it once; the destructor releases it.
class FileLock {
public:
    explicit FileLock(std::string path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    // Waits up to `timeout` seconds, or tries once when `wait` is false. True when the lock is held. False
    // with errno, which is EWOULDBLOCK when another process holds the lock.
    [[nodiscard]] bool AcquireShared(long timeout, bool wait);
    [[nodiscard]] bool AcquireExclusive(long timeout, bool wait);
    void Release();

private:
    bool Acquire(int operation, long timeout, bool wait);

    std::string path_;
    int descriptor_ = -1;
};

// From now on this process waits for no such lock: each is tried once.
void NeverWait();

} // namespace lock_tool

namespace POSIX_File {

// A record lock on a whole file, by an open descriptor that the caller owns.
class SoftLock {
public:
    // `type` is F_RDLCK or F_WRLCK; with `lock_now` it is tried at once.
    SoftLock(int descriptor, short type, bool lock_now);
    ~SoftLock();
    SoftLock(const SoftLock&) = delete;
    SoftLock& operator=(const SoftLock&) = delete;

    // True when the lock is held; without `wait` it is tried once.
    [[nodiscard]] bool Lock(short type, bool wait);
    void Unlock();

private:
    int descriptor_;
    bool held_ = false;
};

} // namespace POSIX_File
