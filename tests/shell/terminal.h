#pragma once

#include "tests/support/processes.h"

#include <csignal>
#include <gtest/gtest.h>
#include <initializer_list>
#include <poll.h>
#include <pty.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

// A program at a terminal of its own, and somebody who types.
class Terminal {
public:
    explicit Terminal(const char* program, const char* option = nullptr, const char* value = nullptr) {
        winsize size{.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
        pid_ = forkpty(&descriptor_, nullptr, nullptr, &size);
        if (pid_ == 0) {
            setenv("TERM", "xterm", 1);
            execl(program, program, option, value, nullptr);
            _exit(127);
        }
    }
    ~Terminal() {
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        close(descriptor_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    // What is typed, and what appears then. Ctrl-L ("\f") brings the line as it stands.
    struct Turn {
        std::string keys;
        std::string answer;
    };
    void Converse(std::initializer_list<Turn> turns) {
        for (const Turn& turn : turns) {
            ASSERT_EQ(write(descriptor_, turn.keys.data(), turn.keys.size()),
                      static_cast<ssize_t>(turn.keys.size()));
            ASSERT_TRUE(Appears(turn.answer)) << "after " << ::testing::PrintToString(turn.keys) << " not "
                                              << ::testing::PrintToString(turn.answer) << " but "
                                              << ::testing::PrintToString(screen_.substr(seen_));
        }
    }

    // The window becomes another size.
    void Resize(unsigned short rows, unsigned short columns) {
        const winsize size{.ws_row = rows, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
        ASSERT_EQ(ioctl(descriptor_, TIOCSWINSZ, &size), 0);
    }
    void Send(int signal) const { ASSERT_EQ(kill(pid_, signal), 0); }
    // Whether the terminal shows what is typed.
    bool Echoes() const {
        termios state{};
        return tcgetattr(descriptor_, &state) == 0 && (state.c_lflag & ECHO) != 0;
    }

    // The exit status, when it ends.
    int Wait() {
        int status = 0;
        EXPECT_TRUE(support::WaitFor([&] { return waitpid(pid_, &status, WNOHANG) == pid_; }));
        pid_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // All that has appeared so far.
    const std::string& Screen() const { return screen_; }

private:
    bool Appears(const std::string& text) {
        std::size_t place;
        while ((place = screen_.find(text, seen_)) == std::string::npos) {
            pollfd ready{.fd = descriptor_, .events = POLLIN, .revents = 0};
            char bytes[4096];
            const bool is_late =
                poll(&ready, 1, static_cast<int>(support::kPatience / std::chrono::milliseconds(1))) != 1;
            const ssize_t count = is_late ? 0 : read(descriptor_, bytes, sizeof bytes);
            if (count <= 0)
                return false;
            screen_.append(bytes, static_cast<std::size_t>(count));
        }
        seen_ = place + text.size();
        return true;
    }

    int descriptor_ = -1;
    pid_t pid_;
    std::string screen_;
    std::size_t seen_ = 0; // up to here it was expected
};
