#include "terminal_wait.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace linux_platform {
namespace {

volatile std::sig_atomic_t came = 0;

void Note(int signal) {
    came = signal;
}

} // namespace

TerminalWait::TerminalWait(bool is_secret) {
    struct sigaction note {};
    note.sa_handler = Note;
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGINT);
    if (is_secret) {
        for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGTSTP}) {
            ::sigaddset(&signals, signal);
            held_.push_back({signal, {}});
        }
    }
    ::pthread_sigmask(SIG_BLOCK, &signals, &mask_);
    for (Held& held : held_)
        ::sigaction(held.signal, &note, &held.previous);
    if (is_secret && ::tcgetattr(STDIN_FILENO, &shown_) == 0)
        Hide();
}

TerminalWait::~TerminalWait() {
    if (is_hidden_)
        Show();
    for (const Held& held : held_)
        ::sigaction(held.signal, &held.previous, nullptr);
    ::pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
}

// What was typed ahead stays: it belongs to whoever reads next.
void TerminalWait::Hide() {
    termios hidden = shown_;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    is_hidden_ = ::tcsetattr(STDIN_FILENO, TCSADRAIN, &hidden) == 0;
}

void TerminalWait::Show() const {
    ::tcsetattr(STDIN_FILENO, TCSADRAIN, &shown_);
}

// Does to the program what the signal would have done, at a terminal that shows again. True when the program
// goes on as if there had been none, such as behind a stop.
bool TerminalWait::Pass(int signal) {
    for (const Held& held : held_) {
        if (held.signal != signal)
            continue;
        if (is_hidden_)
            Show();
        struct sigaction note {};
        ::sigaction(signal, &held.previous, &note);
        ::raise(signal);
        sigset_t all;
        ::pthread_sigmask(SIG_SETMASK, &mask_, &all); // here it comes
        ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
        ::sigaction(signal, &note, nullptr);
        if (is_hidden_)
            Hide();
        return held.previous.sa_handler == SIG_DFL || held.previous.sa_handler == SIG_IGN;
    }
    return false;
}

bool TerminalWait::WaitForByte() {
    for (;;) {
        pollfd input{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        came = 0;
        if (::ppoll(&input, 1, nullptr, &mask_) == 1)
            return true;
        if (errno != EINTR || !Pass(came))
            return false;
    }
}

} // namespace linux_platform
