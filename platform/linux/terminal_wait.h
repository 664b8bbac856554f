#pragma once

#include <csignal>
#include <initializer_list>
#include <termios.h>
#include <vector>

namespace linux_platform {

// The wait for somebody who types at the terminal on standard input. Interrupts are let in by the wait alone,
// so that none is lost between a question and its answer.
class TerminalWait {
public:
    // What is typed for a secret is not shown. Signals that end or stop the program put the terminal right
    // first.
    explicit TerminalWait(bool is_secret);
    ~TerminalWait();
    TerminalWait(const TerminalWait&) = delete;
    TerminalWait& operator=(const TerminalWait&) = delete;

    // Waits for the next byte. False when the program was told to stop asking: its own handler took a signal.
    [[nodiscard]] bool WaitForByte();

private:
    struct Held {
        int signal;
        struct sigaction previous;
    };

    void Hide();
    void Show() const;
    bool Pass(int signal);

    sigset_t mask_{};
    std::vector<Held> held_;
    termios shown_{};
    bool is_hidden_ = false;
};

} // namespace linux_platform
