#include "reference/failover/processes.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace reference::failover {
namespace {

constexpr int kPatience = 100; // looks at a child that is to end, 50 ms apart

[[noreturn]] void Become(const Arguments& arguments) {
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    const int null = open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(null, stream);
    std::vector<char*> pointers;
    for (const std::string& argument : arguments)
        pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    execvp(pointers[0], pointers.data());
    _exit(127);
}

} // namespace

pid_t Start(const Arguments& arguments) {
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child != 0)
        return child;
    if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0 || getppid() != parent)
        _exit(127);
    Become(arguments);
}

bool Run(const Arguments& arguments) {
    const pid_t child = fork();
    if (child == 0)
        Become(arguments);
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

void End(pid_t child) {
    if (child <= 0)
        return;
    kill(child, SIGTERM);
    for (int look = 0; look < kPatience; ++look) {
        if (waitpid(child, nullptr, WNOHANG) != 0)
            return;
        usleep(50000);
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

pid_t ReadPid(const char* path) {
    std::ifstream file(path);
    pid_t pid = -1;
    return file >> pid ? pid : -1;
}

void EndLeftOver(const char* pid_file, const char* program) {
    const pid_t pid = ReadPid(pid_file);
    const std::string link = "/proc/" + std::to_string(pid) + "/exe";
    std::error_code gone;
    const auto runs = [&] { return pid > 0 && std::filesystem::read_symlink(link, gone) == program; };
    for (int look = 0; look < 2 * kPatience && runs(); ++look) {
        kill(pid, look < kPatience ? SIGTERM : SIGKILL);
        usleep(50000);
    }
}

} // namespace reference::failover
