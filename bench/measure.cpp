// measure [--once] RUNS OUTPUT COMMAND ARG...
//
// Runs a command RUNS times after a first run that does not count (--once: just once), and prints "<wall>
// <peak>": the median of its wall time in milliseconds and the largest resident memory of a run in KiB, both
// of the whole process as the kernel accounts for it (wait4(2)). Its standard output goes to the file OUTPUT,
// its standard error away.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct Run {
    double milliseconds;
    long peak;
};

[[noreturn]] void Become(const char* output, char** command) {
    const int out = open(output, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int err = open("/dev/null", O_WRONLY);
    if (out < 0 || err < 0 || dup2(out, STDOUT_FILENO) < 0 || dup2(err, STDERR_FILENO) < 0)
        _exit(126);
    execvp(command[0], command);
    _exit(127);
}

bool Measure(const char* output, char** command, Run& run) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0)
        Become(output, command);
    int status = 0;
    rusage usage = {};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0) {
        std::fprintf(stderr, "measure: %s: wait status %d\n", command[0], status);
        return false;
    }
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
    run = {wall.count(), usage.ru_maxrss};
    return true;
}

} // namespace

int main(int argc, char** argv) {
    const bool once = argc > 1 && std::strcmp(argv[1], "--once") == 0;
    if (once) {
        ++argv;
        --argc;
    }
    const int runs = argc > 3 ? std::atoi(argv[1]) : 0;
    if (runs < 1) {
        std::fputs("measure [--once] RUNS OUTPUT COMMAND ARG...\n", stderr);
        return 2;
    }
    std::vector<double> times;
    long peak = 0;
    for (int i = once ? runs : 0; i <= runs; ++i) {
        Run run = {};
        if (!Measure(argv[2], argv + 3, run))
            return 1;
        if (i > 0)
            times.push_back(run.milliseconds);
        peak = std::max(peak, run.peak);
    }
    std::sort(times.begin(), times.end());
    std::printf("%.1f %ld\n", times[times.size() / 2], peak);
    return 0;
}
