#include "shell/quiet_list.h"

#include "platform/descriptor.h"
#include "platform/locks.h"

#include <chrono>
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace shell {
namespace {

constexpr std::chrono::seconds kMoment{1};

// Each word ends with a zero.
void WriteWords(int descriptor, const ShellWords& words) {
    std::string text;
    for (const std::string& word : words)
        text += word + '\0';
    for (std::size_t place = 0; place < text.size();) {
        const ssize_t count = ::write(descriptor, text.data() + place, text.size() - place);
        if (count <= 0)
            return;
        place += static_cast<std::size_t>(count);
    }
}

[[noreturn]] void RunChild(int result, const std::function<ShellWords()>& list) {
    ::setpgid(0, 0); // with all that it starts
    for (const int signal : {SIGINT, SIGQUIT, SIGTSTP})
        std::signal(signal, SIG_IGN); // of a terminal that is not its own
    const int nowhere = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(nowhere, stream);
    lock_tool::NeverWait(); // what others hold is left out
    try {
        WriteWords(result, list());
    } catch (const std::exception&) {
        ::_exit(1); // what can't be read offers nothing
    }
    ::_exit(0);
}

ShellWords ReadWords(int descriptor) {
    using Clock = std::chrono::steady_clock;
    std::string text;
    for (const auto end = Clock::now() + kMoment;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        pollfd ready{.fd = descriptor, .events = POLLIN, .revents = 0};
        char bytes[4096];
        if (left.count() <= 0 || ::poll(&ready, 1, static_cast<int>(left.count())) != 1)
            return {};
        const ssize_t count = ::read(descriptor, bytes, sizeof bytes);
        if (count <= 0)
            break;
        text.append(bytes, static_cast<std::size_t>(count));
    }
    ShellWords words;
    for (std::size_t begin = 0, end = 0; (end = text.find('\0', begin)) != std::string::npos; begin = end + 1)
        words.push_back(text.substr(begin, end - begin));
    return words;
}

} // namespace

ShellWords ListQuietly(const std::function<ShellWords()>& list) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return {};
    const Descriptor result(ends[0]);
    pid_t child = -1;
    {
        const Descriptor writer(ends[1]);
        child = ::fork();
        if (child == 0)
            RunChild(writer.Get(), list);
    }
    if (child < 0)
        return {};
    ::setpgid(child, child); // whoever is first
    const ShellWords words = ReadWords(result.Get());
    ::kill(-child, SIGKILL);
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return words;
}

} // namespace shell
