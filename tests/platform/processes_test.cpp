#include "scratch.h"

#include "platform/console.h"
#include "platform/processes.h"

#include <csignal>
#include <iostream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class Processes : public Scratch {
protected:
    // Runs the action with standard output and error joined in a file, and gives its text.
    template <typename Action>
    std::string joined_output(Action action) {
        const std::string file = path("output");
        const pid_t pid = ::fork();
        if (pid == 0) {
            if (!std::freopen(file.c_str(), "w", stdout) || ::dup2(STDOUT_FILENO, STDERR_FILENO) < 0)
                ::_exit(1);
            std::ios::sync_with_stdio(false);
            action();
            std::cout.flush();
            std::fflush(nullptr);
            ::_exit(0);
        }
        ::waitpid(pid, nullptr, 0);
        return read(file);
    }
};

TEST_F(Processes, StatusesAndOutput) {
    const struct {
        const char* line;
        int status;
        std::string output;
        std::vector<std::string> lines;
    } cases[] = {
        {"printf 'a\\n\\nb\\n\\n'", 0, "a\n\nb", {"a", "", "b", ""}},
        {"printf 'no newline'; exit 3", 3, "no newline", {"no newline"}},
        {"echo one; kill -9 $$", 137, "one", {"one"}},
        {"no-such-program 2>/dev/null", 127, "", {}},
        {"seq 100000 | tail -1", 0, "100000", {"100000"}},
    };
    for (const auto& [line, status, output, lines] : cases) {
        std::string text = "old";
        std::vector<std::string> list{"old"};
        EXPECT_EQ(corvanshell::run(line, text), status) << line;
        EXPECT_EQ(text, output) << line;
        EXPECT_EQ(corvanshell::run(line, list), status) << line;
        EXPECT_EQ(list, lines) << line;
        EXPECT_EQ(shell_spawn_quiet("/bin/sh", "-c", line, nullptr), status) << line;
    }
    EXPECT_EQ(shell_spawn("/no/such/program", nullptr), 127);
    EXPECT_EQ(BaseExec::run("exit 3"), 3 << 8);
    EXPECT_EQ(BaseExec::run("kill -9 $$"), 9);
}

TEST_F(Processes, ShellProcessTellsItsError) {
    const struct {
        std::vector<std::string> arguments;
        const char* error;
        std::vector<std::string> output;
    } cases[] = {
        {{"/bin/echo", "a b", "$HOME;\nc"}, "", {"a b $HOME;", "c"}},
        {{"/bin/sh", "-c", "echo x; exit 3"}, "exit status 3", {"x"}},
        {{"/bin/sh", "-c", "kill -9 $$"}, "ended by signal 9", {}},
        {{"/no/such/program"}, "No such file or directory", {}},
        {{}, "Invalid argument", {}},
    };
    for (const auto& [arguments, error, output] : cases) {
        ShellProcess process(arguments);
        process.Run();
        EXPECT_EQ(process.Error() ? process.Error().message() : "", error);
        EXPECT_EQ(process.Output(), output) << error;
    }
}

TEST_F(Processes, TextsKeepTheirOrder) {
    EXPECT_EQ(joined_output([] {
                  std::cout << "stream\n";
                  shell_print_info("information %d", 1);
                  shell_print_error("error\n");
                  std::printf("plain\n");
                  BaseExec::run("echo program; echo its error >&2");
                  shell_spawn_quiet("/bin/sh", "-c", "echo hidden; echo hidden >&2", nullptr);
                  shell_print_warning("%s", "");
              }),
              "stream\ninformation 1\nerror\nplain\nprogram\nits error\n\n");
}

TEST_F(Processes, Confirmation) {
    const struct {
        const char* input;
        const char* output;
    } cases[] = {{"y\n", "1"}, {"YES\n", "1"}, {" Yes \r\n", "1"}, {"yes", "1"},  {"n\n", "0"},
                 {"\n", "0"},  {"", "0"},      {"yess\n", "0"},    {"\ny\n", "0"}};
    for (const auto& [input, output] : cases) {
        write(path("input"), input);
        EXPECT_EQ(joined_output([&] {
                      if (std::freopen(path("input").c_str(), "r", stdin))
                          std::cout << shell_get_user_confirmation("Sure about %s?", "it");
                  }),
                  std::string("Sure about it? [y/N] ") + output)
            << input;
    }
}

TEST_F(Processes, IgnoredChildrenStillGiveTheirStatus) {
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(shell_spawn("/bin/sh", "-c", "exit 3", nullptr), 3);
    EXPECT_EQ(std::signal(SIGCHLD, before), SIG_IGN);
    // The interrupt that ends the program does not end us.
    EXPECT_EQ(shell_spawn("/bin/sh", "-c", "kill -INT $PPID; kill -INT $$", nullptr), 128 + SIGINT);
}

TEST_F(Processes, RecordedProcessIds) {
    const struct {
        std::string text;
        pid_t pid;
        const char* message;
    } cases[] = {{"123\n", 123, ""},
                 {"123", 123, ""},
                 {"0\n", 0, "no process ID"},
                 {"-5\n", 0, "no process ID"},
                 {"12a\n", 0, "no process ID"},
                 {"12 13\n", 0, "no process ID"},
                 {"", 0, "no process ID"},
                 {"99999999999\n", 0, "no process ID"},
                 {std::string(100, '1'), 0, "failed to read: File too large"}};
    const std::string name = "platform-test-" + std::to_string(::getpid());
    const std::string record = "/run/" + name + ".pid";
    for (const auto& [text, pid, message] : cases) {
        write(record, text);
        EXPECT_EQ(read_pid(name.c_str(), true), pid) << text;
        testing::internal::CaptureStderr();
        read_pid(name.c_str(), false);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), *message ? record + ": " + message + "\n" : "");
    }
    write(record, "123\n");
    EXPECT_EQ(read_pid(("../run/" + name).c_str(), true), 0);
    std::filesystem::remove(record);
    EXPECT_EQ(read_pid(name.c_str(), true), 0);
    EXPECT_TRUE(check_pid(::getpid()));
    EXPECT_FALSE(check_pid(0) || check_pid(-1));
}

} // namespace
