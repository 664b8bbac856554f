#include "platform/processes.h"

#include "files.h"
#include "spawn.h"
#include "text.h"

#include "platform/messages.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <utility>

namespace {

using Arguments = std::vector<std::string>;

Arguments Collect(const char* program, std::va_list list) {
    Arguments arguments{program};
    while (const char* argument = va_arg(list, const char*))
        arguments.emplace_back(argument);
    return arguments;
}

Arguments ShellLine(const std::string& line) {
    return {"/bin/sh", "-c", line};
}

// Wait statuses other than 0.
class ExitStatusCategory : public std::error_category {
public:
    const char* name() const noexcept override { return "exit status"; }
    std::string message(int status) const override {
        if (WIFSIGNALED(status))
            return "ended by signal " + std::to_string(WTERMSIG(status));
        return "exit status " + std::to_string(WEXITSTATUS(status));
    }
};

std::error_code ProgramError(int wait_status) {
    static const ExitStatusCategory category;
    if (wait_status == -1)
        return {errno, std::generic_category()};
    return wait_status == 0 ? std::error_code() : std::error_code(wait_status, category);
}

} // namespace

int shell_spawn(const char* program, ...) {
    std::va_list list;
    va_start(list, program);
    const Arguments arguments = Collect(program, list);
    va_end(list);
    return linux_platform::ExitStatus(linux_platform::RunProgram(arguments));
}

int shell_spawn_quiet(const char* program, ...) {
    std::va_list list;
    va_start(list, program);
    const Arguments arguments = Collect(program, list);
    va_end(list);
    const Descriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    return linux_platform::ExitStatus(
        linux_platform::RunProgram(arguments, {-1, nowhere.Get(), nowhere.Get()}));
}

void shell_end_program() {
    linux_platform::EndProgram();
}

ShellProcess::ShellProcess(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {}

void ShellProcess::Run() {
    std::string output;
    error_ = ProgramError(linux_platform::CollectProgram(arguments_, {}, output));
    output_ = linux_platform::SplitLines(output);
}

int BaseExec::run(const std::string& command) {
    return linux_platform::RunProgram(ShellLine(command));
}

namespace corvanshell {

int run(const char* command, std::string& output) {
    std::string text;
    const int status = linux_platform::CollectProgram(ShellLine(command), {}, text);
    text.erase(text.find_last_not_of('\n') + 1);
    output = std::move(text);
    return linux_platform::ExitStatus(status);
}

int run(const char* command, std::vector<std::string>& lines) {
    std::string text;
    const int status = linux_platform::CollectProgram(ShellLine(command), {}, text);
    lines = linux_platform::SplitLines(text);
    return linux_platform::ExitStatus(status);
}

} // namespace corvanshell

pid_t read_pid(const char* name, bool quiet) {
    constexpr std::size_t record_limit = 64;
    if (std::strchr(name, '/'))
        return 0;
    const std::string path = std::string("/run/") + name + ".pid";
    std::string text;
    if (const int error = linux_platform::ReadText(path, record_limit, text)) {
        if (!quiet && error != ENOENT)
            PrintError("%s: failed to read: %s", path, std::strerror(error));
        return 0;
    }
    const std::string_view number = linux_platform::Trim(text);
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), pid);
    if (error == std::errc() && end == number.data() + number.size() && pid > 0)
        return pid;
    if (!quiet)
        PrintError("%s: no process ID", path);
    return 0;
}

bool check_pid(pid_t pid) {
    return pid > 0 && (::kill(pid, 0) == 0 || errno == EPERM);
}
