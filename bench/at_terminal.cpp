// at-terminal COMMAND ARG...
//
// Runs a command at a terminal of its own, types "exit" when it shows a prompt ("> "), and ends as it ends.

#include <cstdio>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

int main(int, char** argv) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        execvp(argv[1], argv + 1);
        _exit(127);
    }
    if (child < 0) {
        std::perror("forkpty");
        return 126;
    }
    std::string shown;
    char buffer[4096];
    bool typed = false;
    for (ssize_t count = 0; (count = read(terminal, buffer, sizeof buffer)) > 0;) {
        shown.append(buffer, static_cast<std::size_t>(count));
        if (!typed && shown.ends_with("> "))
            typed = write(terminal, "exit\n", 5) == 5;
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 126;
}
