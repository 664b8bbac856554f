// failoverd active|passive
//
// The failover daemon of the reference appliance: it holds its node's role, and there is no other node. A
// program of its own, because the system looks for a process of this executable.

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <initializer_list>
#include <unistd.h>

namespace {

constexpr const char* kPidFile = "/run/failoverd.pid";
constexpr const char* kStateFile = "/var/spool/corvan/failoverstat";

enum State { kStopped = 0, kPassive = 1, kActive = 2 };

bool WriteState(State state) {
    std::ofstream file(kStateFile);
    file << "state of this node\n" << state << std::endl;
    return file.good();
}

// The signals that end the daemon wait from before it is there until it looks for them.
sigset_t HoldEnds() {
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGTERM);
    sigaddset(&ends, SIGINT);
    sigprocmask(SIG_BLOCK, &ends, nullptr);
    return ends;
}

int Serve(const sigset_t& ends) {
    const int null = open("/dev/null", O_RDWR);
    if (setsid() < 0 || chdir("/") != 0 || null < 0)
        return 1;
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(null, stream);
    int signal = 0;
    sigwait(&ends, &signal);
    return WriteState(kStopped) && unlink(kPidFile) == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const bool active = argc == 2 && std::strcmp(argv[1], "active") == 0;
    if (!active && (argc != 2 || std::strcmp(argv[1], "passive") != 0)) {
        std::fprintf(stderr, "usage: failoverd active|passive\n");
        return 2;
    }
    const sigset_t ends = HoldEnds();
    const pid_t daemon = WriteState(active ? kActive : kPassive) ? fork() : -1;
    if (daemon == 0)
        return Serve(ends);
    // Whoever started it finds it running.
    if (daemon > 0 && (std::ofstream(kPidFile) << daemon << std::endl))
        return 0;
    std::perror("failoverd");
    if (daemon > 0)
        kill(daemon, SIGKILL);
    return 1;
}
