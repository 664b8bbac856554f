#include "scratch.h"

#include "platform/locks.h"
#include "platform/processes.h"

#include <chrono>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using lock_tool::FileLock;
using POSIX_File::SoftLock;

namespace {

using Clock = std::chrono::steady_clock;

class Locks : public Scratch {
protected:
    // What another process finds.
    static bool elsewhere(const std::function<bool()>& question) {
        const pid_t pid = ::fork();
        if (pid == 0)
            ::_exit(question() ? 0 : 1);
        int status = -1;
        ::waitpid(pid, &status, 0);
        return status == 0;
    }
    bool shared_elsewhere() const {
        return elsewhere([this] { return FileLock(lock_path_).AcquireShared(0, false); });
    }
    bool exclusive_elsewhere(long timeout = 0, bool wait = false) const {
        return elsewhere([=, this] { return FileLock(lock_path_).AcquireExclusive(timeout, wait); });
    }
    static bool soft_elsewhere(const std::string& file, short type) {
        return elsewhere([&] {
            const int descriptor = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
            return SoftLock(descriptor, type, false).Lock(type, false);
        });
    }

    const std::string lock_path_ = path("new/folder/test.lock");
};

TEST_F(Locks, KeepsProcessesApart) {
    FileLock lock(lock_path_);
    ASSERT_TRUE(lock.AcquireShared(0, true));
    struct stat status {};
    ASSERT_EQ(::stat(lock_path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U);
    EXPECT_TRUE(shared_elsewhere());
    EXPECT_FALSE(exclusive_elsewhere());
    ASSERT_TRUE(lock.AcquireExclusive(0, true)); // the object's own shared lock is no hindrance
    EXPECT_FALSE(shared_elsewhere());
    lock.Release();
    EXPECT_TRUE(exclusive_elsewhere());
}

TEST_F(Locks, WaitsNoLongerThanItMust) {
    FileLock lock(lock_path_);
    ASSERT_TRUE(lock.AcquireExclusive(0, false));
    auto start = Clock::now();
    EXPECT_FALSE(exclusive_elsewhere(1, true));
    EXPECT_GE(Clock::now() - start, std::chrono::seconds(1));
    EXPECT_FALSE(exclusive_elsewhere(60, false)); // without waiting the timeout says nothing
    lock.Release();

    const pid_t holder = ::fork();
    if (holder == 0) {
        const bool held = lock.AcquireExclusive(0, false);
        ::usleep(300000);
        ::_exit(held ? 0 : 1); // the lock goes with its process
    }
    while (exclusive_elsewhere())
        ::usleep(1000);
    start = Clock::now();
    EXPECT_TRUE(lock.AcquireExclusive(60, true));
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(10));
    ::waitpid(holder, nullptr, 0);
}

TEST_F(Locks, AProgramStartedMeanwhileDoesNotKeepTheLock) {
    FileLock lock(lock_path_);
    ASSERT_TRUE(lock.AcquireExclusive(0, false));
    ASSERT_EQ(BaseExec::run("sleep 2 >/dev/null 2>&1 &"), 0);
    lock.Release();
    EXPECT_TRUE(exclusive_elsewhere());
}

TEST_F(Locks, APathThatCantBeLocked) {
    std::filesystem::create_symlink(path("target"), path("link"));
    EXPECT_FALSE(FileLock(path("link")).AcquireShared(0, false));
    EXPECT_FALSE(std::filesystem::exists(path("target")));
    EXPECT_FALSE(FileLock(folder_).AcquireExclusive(60, true));
}

TEST_F(Locks, SoftLock) {
    const std::string file = path("record");
    write(file, "text");
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
    {
        SoftLock lock(descriptor, F_WRLCK, true);
        EXPECT_FALSE(soft_elsewhere(file, F_RDLCK));
        ::close(::open(file.c_str(), O_RDONLY | O_CLOEXEC)); // a plain record lock would be lost here
        EXPECT_FALSE(soft_elsewhere(file, F_RDLCK));
        EXPECT_TRUE(lock.Lock(F_RDLCK, false));
        EXPECT_TRUE(soft_elsewhere(file, F_RDLCK));
        EXPECT_FALSE(soft_elsewhere(file, F_WRLCK));
        lock.Unlock();
        EXPECT_TRUE(soft_elsewhere(file, F_WRLCK));
        EXPECT_TRUE(lock.Lock(F_WRLCK, true));
    }
    EXPECT_TRUE(soft_elsewhere(file, F_WRLCK));
    ::close(descriptor);
    EXPECT_FALSE(SoftLock(descriptor, F_WRLCK, true).Lock(F_WRLCK, true));
}

} // namespace
