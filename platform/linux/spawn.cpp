#include "spawn.h"

#include "files.h"

#include "platform/processes.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace linux_platform {

namespace {

constexpr std::size_t pipe_size = 65536; // see pipe(7)

// What a text that is larger than a pipe is given at once: memory costs nothing until it is written to,
// moving a text that has outgrown its memory does.
constexpr std::size_t large_text = std::size_t{16} << 20;

std::atomic<pid_t> running{0}; // the program in the foreground

// How we take signals while a program runs in the foreground; the program itself takes them as we did. What
// we handle we go on handling.
class ForegroundSignals {
public:
    ForegroundSignals() {
        for (Entry& entry : entries_) {
            struct sigaction action {};
            action.sa_handler = entry.handler;
            ::sigaction(entry.signal, &action, &entry.previous);
            if (entry.signal != SIGCHLD && entry.previous.sa_handler != SIG_DFL)
                ::sigaction(entry.signal, &entry.previous, nullptr);
        }
    }
    ~ForegroundSignals() {
        for (const Entry& entry : entries_)
            ::sigaction(entry.signal, &entry.previous, nullptr);
    }
    ForegroundSignals(const ForegroundSignals&) = delete;
    ForegroundSignals& operator=(const ForegroundSignals&) = delete;

    // Those that the program must not find ignored. We ignore what a write may raise.
    sigset_t defaults() const {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGPIPE);
        sigaddset(&set, SIGXFSZ);
        for (const Entry& entry : entries_)
            if (entry.previous.sa_handler != SIG_IGN)
                sigaddset(&set, entry.signal);
        return set;
    }

private:
    struct Entry {
        int signal;
        void (*handler)(int);
        struct sigaction previous {};
    };
    // Where children are ignored or reaped by a handler, their status would be lost.
    Entry entries_[3] = {{SIGINT, SIG_IGN}, {SIGQUIT, SIG_IGN}, {SIGCHLD, SIG_DFL}};
};

// Signals wait as long as this lives: the handler of one finds the program that has just been started.
class HeldSignals {
public:
    HeldSignals() {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_BLOCK, &all, &previous_);
    }
    ~HeldSignals() { ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

private:
    sigset_t previous_{};
};

// The C library's two objects that tell posix_spawn(3) what to do.
struct SpawnPlan {
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;

    SpawnPlan(const Streams& streams, const ForegroundSignals& signals) {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
        const int wanted[] = {streams.input, streams.output, streams.errors};
        for (int stream = 0; stream < 3; ++stream)
            if (wanted[stream] >= 0)
                posix_spawn_file_actions_adddup2(&actions, wanted[stream], stream);
        // Our input holds lines that are not the program's, unless a person types it.
        if (streams.input < 0 && ::isatty(STDIN_FILENO) == 0)
            posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        const sigset_t defaults = signals.defaults();
        posix_spawnattr_setsigdefault(&attributes, &defaults);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;
};

// -1 with errno when the program can't be started.
pid_t start(const std::vector<std::string>& arguments, const Streams& streams,
            const ForegroundSignals& signals) {
    std::vector<char*> vector;
    vector.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments)
        vector.push_back(const_cast<char*>(argument.c_str()));
    vector.push_back(nullptr);
    std::cout.flush();
    std::fflush(nullptr);
    if (arguments.empty()) {
        errno = EINVAL;
        return -1;
    }
    const SpawnPlan plan(streams, signals);
    pid_t pid = -1;
    const HeldSignals held;
    const int error =
        ::posix_spawnp(&pid, vector[0], &plan.actions, &plan.attributes, vector.data(), environ);
    running = error == 0 ? pid : 0;
    errno = error;
    return error == 0 ? pid : -1;
}

int WaitFor(pid_t pid) {
    int status = -1;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno == EINTR)
            continue;
        status = -1;
        break;
    }
    running = 0;
    return status;
}

} // namespace

int RunProgram(const std::vector<std::string>& arguments, const Streams& streams) {
    const ForegroundSignals signals;
    const pid_t pid = start(arguments, streams, signals);
    return pid < 0 ? -1 : WaitFor(pid);
}

int CollectProgram(const std::vector<std::string>& arguments, Streams streams, std::string& output) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return -1;
    const Descriptor reader(ends[0]);
    Descriptor writer(ends[1]);
    streams.output = writer.Get();

    const ForegroundSignals signals;
    const pid_t pid = start(arguments, streams, signals);
    if (pid < 0)
        return -1;
    writer.Reset();
    static char buffer[pipe_size]; // too much for a small stack
    for (long count = 0; (count = ReadSome(reader.Get(), buffer, sizeof buffer)) > 0;) {
        if (output.size() >= sizeof buffer)
            output.reserve(large_text);
        output.append(buffer, static_cast<std::size_t>(count));
    }
    return WaitFor(pid);
}

void EndProgram() {
    const int error = errno; // the handler's caller has its own
    if (const pid_t pid = running; pid > 0)
        ::kill(pid, SIGTERM);
    errno = error;
}

int ExitStatus(int wait_status) {
    if (wait_status == -1)
        return kNotStarted;
    return WIFSIGNALED(wait_status) ? 128 + WTERMSIG(wait_status) : WEXITSTATUS(wait_status);
}

} // namespace linux_platform
