// failoverd [active|passive]
//
// The failover daemon of the reference appliance, one node of a pair. The system looks for a process of this
// executable. It returns when the daemon runs; as the active node when it is that, and without a role when it
// is known whether it is.

#include "reference/failover/node.h"
#include "reference/failover/processes.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace reference::failover;

constexpr const char* kPidFile = "/run/failoverd.pid";
constexpr int kPatience = 15000; // milliseconds for a node to become active
constexpr int kLook = 50;        // milliseconds between two looks whether it has

using Clock = std::chrono::steady_clock;

void BeDaemon() {
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(null, stream);
}

// A process that outlives the daemon by a moment: however that ended, nothing of it stays behind. -1 when
// there is none; `life` stays open in the daemon alone.
pid_t Guard(int& life) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return -1;
    const pid_t daemon = getpid();
    const pid_t guard = fork();
    if (guard == 0) {
        close(ends[1]);
        BeDaemon();
        char byte = 0;
        while (read(ends[0], &byte, 1) > 0) {
        }
        if (ReadPid(kPidFile) != daemon)
            _exit(0); // another one has followed it
        DropAddresses();
        const bool written = WriteState(kStopped);
        unlink(kPidFile);
        _exit(written ? 0 : 1);
    }
    close(ends[0]);
    life = ends[1];
    return guard;
}

bool HasSettled(const Node& node, Role role, Clock::time_point since) {
    return role == Role::kPassive || node.Current() == kActive ||
           (role == Role::kAny && Clock::now() - since > node.TakeoverTime());
}

// Until a signal or a daemon's end; `ready` gets a byte when the role is there.
void Follow(Node& node, Role role, int signals, int ready) {
    const Clock::time_point since = Clock::now();
    for (bool told = false;;) {
        if (!told && HasSettled(node, role, since)) {
            told = write(ready, "", 1) == 1;
            BeDaemon();
        }
        pollfd descriptors[] = {{signals, POLLIN, 0}, {node.Descriptor(), POLLIN, 0}};
        signalfd_siginfo signal{};
        poll(descriptors, std::size(descriptors), told ? -1 : kLook);
        if (!node.TakeEvents() || !node.Lives())
            return;
        if (descriptors[0].revents != 0 && read(signals, &signal, sizeof signal) == sizeof signal &&
            signal.ssi_signo != SIGCHLD)
            return;
    }
}

int Serve(Role role, const sigset_t& held, int ready) {
    int life = -1;
    const pid_t guard = setsid() < 0 || chdir("/") != 0 ? -1 : Guard(life);
    const int signals = signalfd(-1, &held, SFD_CLOEXEC);
    const std::string pid = std::to_string(getpid()) + "\n";
    if (guard < 0 || signals < 0 || !ReplaceFile(kPidFile, pid))
        return 1;
    {
        Node node(role);
        if (node.Begin())
            Follow(node, role, signals, ready);
    }
    close(life);
    waitpid(guard, nullptr, 0);
    return 0;
}

int WaitUntilReady(pid_t daemon, int ready) {
    pollfd descriptor{ready, POLLIN, 0};
    char byte = 0;
    const bool answered = poll(&descriptor, 1, kPatience) == 1;
    if (answered && read(ready, &byte, 1) == 1)
        return 0;
    std::fprintf(stderr, "failoverd: %s\n", answered ? "failed to start" : "another node stays active");
    kill(daemon, SIGTERM);
    waitpid(daemon, nullptr, 0);
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    const std::string word = argc == 2 ? argv[1] : "";
    if (argc > 2 || (argc == 2 && word != "active" && word != "passive")) {
        std::fprintf(stderr, "usage: failoverd [active|passive]\n");
        return 2;
    }
    const Role role = word == "active" ? Role::kActive : word == "passive" ? Role::kPassive : Role::kAny;
    // The signals that end the daemon wait from before it is there until it looks for them.
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : {SIGTERM, SIGINT, SIGCHLD})
        sigaddset(&held, signal);
    sigprocmask(SIG_BLOCK, &held, nullptr);
    int ends[2];
    const pid_t daemon = pipe2(ends, O_CLOEXEC) == 0 ? fork() : -1;
    if (daemon == 0) {
        close(ends[0]);
        return Serve(role, held, ends[1]);
    }
    if (daemon < 0) {
        std::perror("failoverd");
        return 1;
    }
    close(ends[1]);
    return WaitUntilReady(daemon, ends[0]);
}
