#include "tests/support/processes.h"

#include "tests/support/descriptors.h"

#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace support {

namespace {

// A setting-up step that fails is a fault of the test itself.
void Must(const Result& result, const std::string& what) {
    if (result.status != 0) {
        ADD_FAILURE() << what << ": " << result.err;
    }
}

} // namespace

Result RunProgram(const Arguments& arguments, const std::string& input) {
    return Daemon(arguments, input).Wait();
}

Result RunShell(const std::string& line) {
    return RunProgram({"/bin/sh", "-c", line});
}

bool WaitFor(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

Daemon::Daemon(const Arguments& arguments, const std::string& input)
    : out_(MemoryFile()), err_(MemoryFile()) {
    const int in = MemoryFile(input);
    std::vector<char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    pid_ = fork();
    if (pid_ == 0) {
        setpgid(0, 0);
        dup2(in, STDIN_FILENO);
        dup2(out_, STDOUT_FILENO);
        dup2(err_, STDERR_FILENO);
        execvp(argv[0], argv.data());
        std::perror(argv[0]);
        _exit(127);
    }
    setpgid(pid_, pid_);
    close(in);
}

Daemon::Daemon(Daemon&& other) noexcept
    : pid_(std::exchange(other.pid_, 0)), out_(std::exchange(other.out_, -1)),
      err_(std::exchange(other.err_, -1)) {}

Daemon::~Daemon() {
    if (pid_ > 0) {
        kill(-pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    close(out_);
    close(err_);
}

std::string Daemon::Out() const {
    return Contents(out_);
}
std::string Daemon::Err() const {
    return Contents(err_);
}

bool Daemon::WaitForText(const std::string& text) const {
    return WaitFor([&] { return (Out() + Err()).find(text) != std::string::npos; });
}

Result Daemon::Wait(std::chrono::milliseconds limit) {
    int status = 0;
    const bool in_time = WaitFor([&] { return waitpid(pid_, &status, WNOHANG) == pid_; }, limit);
    if (!in_time) {
        kill(-pid_, SIGKILL);
        waitpid(pid_, &status, 0);
    }
    pid_ = 0;
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return {in_time ? code : -1, Out(), Err()};
}

Daemon HoldLock(const std::string& path, bool exclusive) {
    // Only flock(1) itself holds the lock (--close), so that it is free once that process has been waited
    // for.
    Daemon holder({"/usr/bin/flock", "--close", exclusive ? "--exclusive" : "--shared", path, "/bin/sh", "-c",
                   "echo held; exec sleep infinity"});
    EXPECT_TRUE(holder.WaitForText("held")) << path;
    return holder;
}

Peer::Peer() : keeper_({"/usr/bin/unshare", "--net", "/bin/sh", "-c", "echo there; exec sleep infinity"}) {
    EXPECT_TRUE(keeper_.WaitForText("there"));
    Must(RunProgram(Inside({"ip", "link", "set", "lo", "up"})), "loopback of the peer");
}

Arguments Peer::Inside(const Arguments& arguments) const {
    Arguments inside{"/usr/bin/nsenter", "--target", std::to_string(Pid()), "--net", "--"};
    inside.insert(inside.end(), arguments.begin(), arguments.end());
    return inside;
}

void MakeVeth(const std::string& near, const std::string& far) {
    Must(RunProgram({"ip", "link", "add", near, "type", "veth", "peer", "name", far}), near);
    Must(RunProgram({"ip", "link", "set", near, "up"}), near);
    Must(RunProgram({"ip", "link", "set", far, "up"}), far);
}

void MakeVeth(const std::string& near, const std::string& far, const Peer& peer) {
    MakeVeth(near, far);
    Must(RunProgram({"ip", "link", "set", far, "netns", std::to_string(peer.Pid())}), far);
    Must(RunProgram(peer.Inside({"ip", "link", "set", far, "up"})), far);
}

void FillDisk(const std::string& directory) {
    // The old files become the lower layer of an overlay, so that they are there to read; its upper layer has
    // one page, and that is taken.
    const std::string script = R"(
        disk=$(mktemp -d)
        mkdir "$disk/old" "$disk/new"
        cp -a "$1/." "$disk/old"
        mount -t tmpfs -o size=4k full "$disk/new"
        mkdir "$disk/new/upper" "$disk/new/work"
        head -c 4096 /dev/zero > "$disk/new/filler"
        mount -t overlay -o "lowerdir=$disk/old,upperdir=$disk/new/upper,workdir=$disk/new/work" full "$1")";
    Must(RunProgram({"/bin/sh", "-ec", script, "sh", directory}), "full disk at " + directory);
}

} // namespace support
