#include "tests/support/capture.h"

#include "tests/support/descriptors.h"

#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <stdio_ext.h>
#include <unistd.h>

namespace support {

namespace {

void Flush() {
    std::cout.flush();
    std::cerr.flush();
    std::fflush(nullptr);
}

// Puts a file in the place of a standard descriptor for as long as it lives.
class Redirection {
public:
    Redirection(int standard, int file)
        : standard_(standard), file_(file), saved_(fcntl(standard, F_DUPFD_CLOEXEC, 3)) {
        dup2(file_, standard_);
    }
    ~Redirection() {
        dup2(saved_, standard_);
        close(saved_);
        close(file_);
    }
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;
    [[nodiscard]] std::string Text() const { return Contents(file_); }

private:
    int standard_;
    int file_;
    int saved_;
};

} // namespace

void PrintTo(const Output& output, std::ostream* stream) {
    *stream << "standard output: \"" << output.out << "\", standard error: \"" << output.err << '"';
}

Output Capture(const std::function<void()>& call, const std::string& input) {
    Flush();
    // Nothing that an earlier call left unread, nor its end of input, may reach this one.
    __fpurge(stdin);
    std::clearerr(stdin);
    std::cin.clear();
    const Redirection in(STDIN_FILENO, MemoryFile(input));
    const Redirection out(STDOUT_FILENO, MemoryFile());
    const Redirection err(STDERR_FILENO, MemoryFile());
    call();
    Flush();
    return {out.Text(), err.Text()};
}

} // namespace support
