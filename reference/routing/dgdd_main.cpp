// dgdd
//
// The dead gateway detection at work: checks the next hops of its running configuration side by side, and
// runs a rule's actions when all of the rule's states have come true. Returns when the daemon runs; SIGTERM
// ends it.

#include "reference/routing/monitor.h"
#include "reference/routing/store.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <syslog.h>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t ended = 0;

// The daemon holds its pid file locked for as long as it lives. Whoever looks whether it does has the lock
// for a moment.
bool TakePidFile() {
    const int file = open(reference::routing::kDgddPidFile, O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    bool taken = false;
    for (int attempt = 0; !taken && attempt < 20; ++attempt) {
        taken = flock(file, LOCK_EX | LOCK_NB) == 0;
        if (!taken)
            usleep(10000);
    }
    if (!taken || ftruncate(file, 0) != 0)
        return false;
    const std::string pid = std::to_string(getpid()) + "\n";
    return write(file, pid.data(), pid.size()) == static_cast<ssize_t>(pid.size());
}

int Serve(int ready) {
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (setsid() < 0 || chdir("/") != 0 || null < 0 || !TakePidFile())
        return 1;
    openlog("dgdd", LOG_PID, LOG_DAEMON);
    reference::routing::Monitor monitor;
    if (!monitor.Begin())
        return 1;
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(null, stream);
    const bool told = write(ready, "", 1) == 1;
    close(ready);
    while (told && ended == 0)
        monitor.Turn();
    return 0;
}

} // namespace

int main() {
    struct sigaction action {};
    action.sa_handler = [](int) { ended = 1; };
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return 1;
    const pid_t daemon = fork();
    if (daemon == 0) {
        close(ends[0]);
        return Serve(ends[1]);
    }
    close(ends[1]);
    char byte = 0;
    const bool runs = daemon > 0 && read(ends[0], &byte, 1) == 1;
    if (!runs)
        std::fprintf(stderr, "dgdd: failed to start\n");
    return runs ? 0 : 1;
}
