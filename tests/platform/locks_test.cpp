#include "platform/locks.h"
#include "platform/processes.h"
#include "tests/support/appliance.h"

#include <chrono>
#include <fcntl.h>
#include <memory>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace support;

namespace {

using lock_tool::FileLock;
using POSIX_File::SoftLock;
using Clock = std::chrono::steady_clock;
using LockTest = Appliance;

const std::string kLock = "/run/lock/new/folder/test.lock";

// What another process finds.
bool Elsewhere(const std::function<bool()>& question) {
    const pid_t pid = fork();
    if (pid == 0) {
        _exit(question() ? 0 : 1);
    }
    int status = -1;
    waitpid(pid, &status, 0);
    return status == 0;
}

bool SharedElsewhere() {
    return Elsewhere([] { return FileLock(kLock).AcquireShared(0, false); });
}

bool ExclusiveElsewhere() {
    return Elsewhere([] { return FileLock(kLock).AcquireExclusive(60, false); });
}

bool SoftElsewhere(const std::string& file, short type) {
    return Elsewhere(
        [&] { return SoftLock(open(file.c_str(), O_RDWR | O_CLOEXEC), type, false).Lock(type, false); });
}

TEST_F(LockTest, KeepsProcessesApart) {
    FileLock lock(kLock);
    ASSERT_TRUE(lock.AcquireShared(0, true));
    EXPECT_EQ(ModeOf(kLock), 0600U);
    EXPECT_TRUE(SharedElsewhere());
    EXPECT_FALSE(ExclusiveElsewhere());
    ASSERT_TRUE(lock.AcquireExclusive(0, true)); // its own shared lock is no hindrance
    EXPECT_FALSE(SharedElsewhere());
    ASSERT_EQ(BaseExec::run("sleep 5 >/dev/null 2>&1 &"), 0); // keeps nothing of the lock
    lock.Release();
    EXPECT_TRUE(ExclusiveElsewhere());
}

TEST_F(LockTest, WaitsNoLongerThanItMust) {
    FileLock lock(kLock);
    WriteFile(kLock, "");
    {
        const Daemon holder = HoldLock(kLock, false);
        auto start = Clock::now();
        EXPECT_FALSE(lock.AcquireExclusive(60, false));
        EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(900));
        start = Clock::now();
        EXPECT_FALSE(lock.AcquireExclusive(1, true));
        EXPECT_EQ(errno, EWOULDBLOCK);
        EXPECT_GE(Clock::now() - start, std::chrono::seconds(1));
    }
    auto holder = std::make_unique<Daemon>(HoldLock(kLock, true));
    std::jthread killer([&] {
        usleep(200000);
        holder.reset(); // the lock goes with its process
    });
    EXPECT_TRUE(lock.AcquireShared(20, true));
}

TEST_F(LockTest, APathThatCantBeLocked) {
    WriteLink("/run/link", "/run/target");
    EXPECT_FALSE(FileLock("/run/link").AcquireShared(0, false));
    EXPECT_FALSE(Exists("/run/target"));
    EXPECT_FALSE(FileLock("/run/lock").AcquireExclusive(60, true));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(TakeLog(), (std::vector<LogLine>{
                             {3, "/run/link: failed to open lock file: Too many levels of symbolic links"},
                             {3, "/run/lock: failed to open lock file: Is a directory"}}));
}

TEST_F(LockTest, NobodyElsesLockFileIsTaken) {
    WriteFile(kLock, "");
    if (chown(kLock.c_str(), 1000, 1000) != 0)
        GTEST_SKIP() << "there is no second user here";
    EXPECT_FALSE(FileLock(kLock).AcquireShared(0, false));
    EXPECT_EQ(errno, EPERM);
    EXPECT_EQ(TakeLog(), (std::vector<LogLine>{{3, kLock + ": the lock file belongs to another user"}}));
}

TEST_F(LockTest, SoftLock) {
    const std::string file = "/mnt/record";
    WriteFile(file, "text");
    const int descriptor = open(file.c_str(), O_RDWR | O_CLOEXEC);
    {
        SoftLock lock(descriptor, F_WRLCK, true);
        close(open(file.c_str(), O_RDONLY | O_CLOEXEC)); // a plain record lock would be lost here
        EXPECT_FALSE(SoftElsewhere(file, F_RDLCK));
        EXPECT_TRUE(lock.Lock(F_RDLCK, false));
        EXPECT_TRUE(SoftElsewhere(file, F_RDLCK));
        EXPECT_FALSE(SoftElsewhere(file, F_WRLCK));
        lock.Unlock();
        EXPECT_TRUE(SoftElsewhere(file, F_WRLCK));
        EXPECT_TRUE(lock.Lock(F_WRLCK, true));
    }
    EXPECT_TRUE(SoftElsewhere(file, F_WRLCK));
    close(descriptor);
    EXPECT_FALSE(SoftLock(descriptor, F_WRLCK, true).Lock(F_WRLCK, true));
}

} // namespace
