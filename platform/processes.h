#pragma once

#include <string>
#include <sys/types.h>
#include <system_error>
#include <vector>

// Outside programs and daemons.

// Run a program with a null-ended list of arguments, without a shell, and give its exit status (128 + the
// signal's number when a signal ended it, 127 when it can't be started). The quiet form discards its output.
[[gnu::sentinel]] int shell_spawn(const char* program, ...);
[[gnu::sentinel]] int shell_spawn_quiet(const char* program, ...);
constexpr int kNotStarted = 127;

// Ends the program that runs in the foreground, if one does, with SIGTERM. A signal handler may call it.
void shell_end_program();

// A program run without a shell, whose output is collected.
class ShellProcess {
public:
    explicit ShellProcess(std::vector<std::string> arguments);

    // Runs the program to its end. Its error code is set when it can't be started or ends with a status
    // other than 0.
    void Run();

    const std::vector<std::string>& Output() const { return output_; } // lines of standard output
    const std::error_code& Error() const { return error_; }

private:
    std::vector<std::string> arguments_;
    std::vector<std::string> output_;
    std::error_code error_;
};

struct BaseExec {
    // Runs a shell line and gives its wait status, -1 when no shell can be started.
    static int run(const std::string& command);
};

namespace corvanshell {

// Run a shell line and give its exit status, 0 on success. The string gets the standard output without its
// trailing newlines, the vector one string a line.
int run(const char* command, std::string& output);
int run(const char* command, std::vector<std::string>& lines);

} // namespace corvanshell

// The process ID that the service of that name has recorded, 0 when there is none. Unless `quiet`, a
// record that can't be read is reported on the terminal.
pid_t read_pid(const char* name, bool quiet);
// Whether the process lives.
bool check_pid(pid_t pid);
