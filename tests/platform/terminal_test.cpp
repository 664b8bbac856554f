#include "platform/console.h"
#include "platform/messages.h"
#include "tests/support/appliance.h"

#include <csignal>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

using namespace support;

namespace {

using TerminalTest = Appliance;

// A call in a process of its own, at a terminal of its own.
class OnTerminal {
public:
    explicit OnTerminal(const std::function<void()>& call)
        : pid_(forkpty(&terminal_, nullptr, nullptr, nullptr)) {
        if (pid_ != 0)
            return;
        call();
        _exit(0);
    }
    ~OnTerminal() { close(terminal_); }

    // What it shows up to `text`, or to its end.
    std::string ReadUpTo(const std::string& text) const {
        std::string shown;
        char byte = 0;
        while ((text.empty() || !shown.ends_with(text)) && read(terminal_, &byte, 1) == 1)
            shown += byte;
        return shown;
    }
    bool Shows() const {
        termios modes{};
        return tcgetattr(terminal_, &modes) == 0 && (modes.c_lflag & ECHO) != 0;
    }
    // Its wait status behind the signal.
    int EndBy(int signal) const {
        kill(pid_, signal);
        int status = -1;
        waitpid(pid_, &status, 0);
        return status;
    }

private:
    int terminal_ = -1;
    pid_t pid_;
};

TEST_F(TerminalTest, WarningsAreMarkedThere) {
    const auto print = [] {
        PrintWarning("eth1 goes down\033[2J \302\23331m \xc3\xa4");
        PrintError("eth2");
    };
    const std::string text = "eth1 goes down#033[2J #302#23331m \xc3\xa4";
    EXPECT_EQ(Capture(print).err, text + "\neth2\n");
    EXPECT_EQ(OnTerminal(print).ReadUpTo(""), "warning: " + text + "\r\neth2\r\n");
}

TEST_F(TerminalTest, SignalsFindTheInputShown) {
    const auto ask = [] {
        std::string answer;
        static_cast<void>(shell_get_user_response("Password:", true, answer));
    };
    for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
        const OnTerminal question(ask);
        question.ReadUpTo("Password:");
        EXPECT_FALSE(question.Shows());
        EXPECT_EQ(WTERMSIG(question.EndBy(signal)), signal);
        EXPECT_TRUE(question.Shows()) << signal;
    }
}

} // namespace
