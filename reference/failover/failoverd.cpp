// failoverd active|passive
//
// The failover daemon of the reference appliance: it holds its node's role, and there is no other node. A
// program of its own, because the system looks for a process of this executable.

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
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

int WaitForSignal() {
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGTERM);
    sigaddset(&ends, SIGINT);
    sigprocmask(SIG_BLOCK, &ends, nullptr);
    if (!(std::ofstream(kPidFile) << getpid() << std::endl))
        return 1;
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
    if (!WriteState(active ? kActive : kPassive) || daemon(0, 0) != 0) {
        std::perror("failoverd");
        return 1;
    }
    return WaitForSignal();
}
