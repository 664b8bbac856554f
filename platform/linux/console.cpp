#include "platform/console.h"

#include "text.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <poll.h>
#include <strings.h>
#include <termios.h>
#include <unistd.h>

namespace {

void PrintLine(std::FILE* stream, const char* format, std::va_list arguments) {
    std::string text = linux_platform::FormatText(format, arguments);
    if (text.empty() || text.back() != '\n')
        text += '\n';
    std::cout.flush();
    // Both streams may be one terminal or file, and standard output alone has a buffer.
    if (stream != stdout)
        std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stream);
}

bool all_confirmed = false;

// Interrupts wait as long as this lives, so that none is lost between a question and the wait for its answer.
class HeldInterrupt {
public:
    HeldInterrupt() {
        sigset_t interrupt;
        ::sigemptyset(&interrupt);
        ::sigaddset(&interrupt, SIGINT);
        ::pthread_sigmask(SIG_BLOCK, &interrupt, &previous_);
    }
    ~HeldInterrupt() { Release(); }
    HeldInterrupt(const HeldInterrupt&) = delete;
    HeldInterrupt& operator=(const HeldInterrupt&) = delete;

    // Lets them in until there is a line to read. False when one came. Elsewhere than at a terminal a line
    // may be in the buffer already, and the reading itself lets them in.
    [[nodiscard]] bool WaitForLine() {
        if (::isatty(STDIN_FILENO) == 0) {
            Release();
            return true;
        }
        pollfd input{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        return ::ppoll(&input, 1, nullptr, &previous_) == 1;
    }

private:
    void Release() { ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }

    sigset_t previous_{};
};

// False when there is no further line, or an interrupt came before it.
bool ReadAnswer(HeldInterrupt& interrupt, std::string& answer) {
    if (!interrupt.WaitForLine())
        return false;
    char* line = nullptr;
    std::size_t size = 0;
    const auto length = ::getline(&line, &size, stdin);
    const std::unique_ptr<char, void (*)(void*)> owner(line, std::free);
    if (length <= 0) {
        std::clearerr(stdin); // a terminal goes on
        return false;
    }
    answer = linux_platform::Trim({line, static_cast<std::size_t>(length)});
    return true;
}

void ShowQuestion(const std::string& question) {
    std::cout.flush();
    std::fwrite(question.data(), 1, question.size(), stdout);
    std::fflush(stdout);
}

// What is typed at the terminal on standard input is not shown as long as this lives.
class HiddenInput {
public:
    HiddenInput() {
        if (::tcgetattr(STDIN_FILENO, &previous_) != 0)
            return;
        termios hidden = previous_;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        hidden_ = ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden) == 0;
    }
    ~HiddenInput() {
        if (!hidden_)
            return;
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &previous_);
        ShowQuestion("\n"); // the one that was not shown
    }
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

private:
    termios previous_{};
    bool hidden_ = false;
};

} // namespace

void shell_print_error(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PrintLine(stderr, format, arguments);
    va_end(arguments);
}

void shell_print_warning(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PrintLine(stderr, format, arguments);
    va_end(arguments);
}

void shell_print_info(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    PrintLine(stdout, format, arguments);
    va_end(arguments);
}

int shell_get_user_confirmation(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string question = linux_platform::FormatText(format, arguments) + " [y/N] ";
    va_end(arguments);
    if (all_confirmed) {
        ShowQuestion(question + "yes\n");
        return 1;
    }
    HeldInterrupt interrupt;
    ShowQuestion(question);
    std::string answer;
    return ReadAnswer(interrupt, answer) &&
           (::strcasecmp(answer.c_str(), "y") == 0 || ::strcasecmp(answer.c_str(), "yes") == 0);
}

void shell_assume_confirmation() {
    all_confirmed = true;
}

bool shell_get_user_response(const char* question, bool secret, std::string& response) {
    HeldInterrupt interrupt;
    std::optional<HiddenInput> hidden;
    if (secret)
        hidden.emplace();
    ShowQuestion(std::string(question) + " ");
    return ReadAnswer(interrupt, response);
}

namespace corvanshell {

std::string WrapStr(const std::string& text, std::size_t width) {
    std::string wrapped = text;
    std::size_t start = 0;                 // of the line
    std::size_t blank = std::string::npos; // the last one that the line may break at
    for (std::size_t i = 0; i < wrapped.size(); ++i) {
        if (wrapped[i] == '\n') {
            start = i + 1;
            blank = std::string::npos;
            continue;
        }
        if (wrapped[i] == ' ' && i > start)
            blank = i;
        if (i - start >= width && blank != std::string::npos) {
            wrapped[blank] = '\n';
            start = blank + 1;
            blank = std::string::npos;
        }
    }
    return wrapped;
}

} // namespace corvanshell
