#include "platform/console.h"
#include "platform/input.h"
#include "platform/pager.h"
#include "platform/processes.h"
#include "tests/support/appliance.h"

#include <csignal>
#include <iostream>
#include <unistd.h>

using namespace support;

namespace {

using ProcessTest = Appliance;

TEST_F(ProcessTest, StatusesAndOutput) {
    using List = std::vector<std::string>;
    const auto expect = [](const char* line, int status, const char* output, const List& lines) {
        std::string text = "old";
        List list{"old"};
        EXPECT_EQ(corvanshell::run(line, text), status) << line;
        EXPECT_EQ(text, output) << line;
        EXPECT_EQ(corvanshell::run(line, list), status) << line;
        EXPECT_EQ(list, lines) << line;
        EXPECT_EQ(shell_spawn_quiet("/bin/sh", "-c", line, nullptr), status) << line;
    };
    expect("printf 'a\\n\\nb\\n\\n'", 0, "a\n\nb", {"a", "", "b", ""});
    expect("printf 'no newline'; exit 3", 3, "no newline", {"no newline"});
    expect("echo one; kill -9 $$", 137, "one", {"one"});
    expect("exec no-such-program 2>/dev/null", 127, "", {});
    expect("seq 100000 | tail -1", 0, "100000", {"100000"});
    EXPECT_EQ(shell_spawn("/no/such/program", nullptr), 127);
    EXPECT_EQ(BaseExec::run("exit 3"), 3 << 8);
    EXPECT_EQ(BaseExec::run("kill -9 $$"), 9);
}

TEST_F(ProcessTest, ProgramsTakeNothingThatIsOurs) {
    EXPECT_EQ(Capture([] { BaseExec::run("cat"); }, "our next line\n").out, "");
    sigset_t interrupt, before;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    sigprocmask(SIG_BLOCK, &interrupt, &before);
    std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(BaseExec::run("kill -INT $$"), SIGINT);
    EXPECT_EQ(BaseExec::run("kill -PIPE $$"), SIGPIPE);
    std::signal(SIGPIPE, SIG_DFL);
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(ProcessTest, ShellProcessTellsItsError) {
    using List = std::vector<std::string>;
    const auto expect = [](const List& arguments, const char* error, const List& output) {
        ShellProcess process(arguments);
        process.Run();
        EXPECT_EQ(process.Error() ? process.Error().message() : "", error);
        EXPECT_EQ(process.Output(), output) << error;
    };
    expect({"/bin/echo", "a b", "$HOME;\nc"}, "", {"a b $HOME;", "c"});
    expect({"/bin/sh", "-c", "echo x; exit 3"}, "exit status 3", {"x"});
    expect({"/bin/sh", "-c", "kill -9 $$"}, "ended by signal 9", {});
    expect({"/no/such/program"}, "No such file or directory", {});
    expect({}, "Invalid argument", {});
}

TEST_F(ProcessTest, TextsKeepTheirOrder) {
    WriteFile("/run/text", "file\n");
    const Output joined = Capture([] {
        dup2(STDOUT_FILENO, STDERR_FILENO);
        std::cout << "stream\n";
        shell_print_info("information %d", 1);
        shell_print_error("error\n");
        std::printf("plain\n");
        BaseExec::run("echo program; echo its error >&2");
        shell_spawn_quiet("/bin/sh", "-c", "echo hidden; echo hidden >&2", nullptr);
        ShellPager pager;
        EXPECT_TRUE(pager.open() && pager.print_file("/run/text") && !pager.print_file("/run/none"));
        pager.wait();
        shell_print_warning("%s", "");
    });
    EXPECT_EQ(joined.out, "stream\ninformation 1\nerror\nplain\nprogram\nits error\n"
                          "/run/none: failed to read: No such file or directory\nfile\n\n");
}

TEST_F(ProcessTest, ThePagerDoesNotHoldUpItsWriter) {
    if (const char* text = std::getenv("PAGER_TEXT")) { // the program that script(1) gives a terminal below
        ShellPager pager;
        EXPECT_TRUE(pager.open() && pager.print_file(text));
        std::cout << "written" << std::endl;
        pager.wait();
        std::cout << "left" << std::endl;
        return;
    }
    WriteFile("/run/text", RunProgram({"seq", "--format=line %g", "50000"}).out); // more than a pipe holds
    const std::string line = "PAGER_TEXT=/run/text TERM=vt100 /proc/" + std::to_string(getpid()) +
                             "/exe --gtest_filter=*.ThePagerDoesNot*";
    const Daemon terminal(
        {"sh", "-c", "(sleep 1; printf q; sleep 9) | script -qec '" + line + "' /dev/null"});
    EXPECT_TRUE(terminal.WaitForText("line 10")) << terminal.Out();
    EXPECT_TRUE(terminal.WaitForText("left")) << terminal.Out();
    EXPECT_LT(terminal.Out().find("written"), terminal.Out().find("line 10"));
    EXPECT_EQ(terminal.Out().find("line 49999"), std::string::npos);
}

TEST_F(ProcessTest, Confirmation) {
    const auto confirm = [](const char* input) {
        int answer = -1;
        const auto ask = [&] { answer = shell_get_user_confirmation("Sure about %s?", "it"); };
        EXPECT_EQ(Capture(ask, input).out, "Sure about it? [y/N] ");
        return answer;
    };
    for (const char* input : {"y\n", "YES\n", " Yes \r\n", "yes"}) {
        EXPECT_EQ(confirm(input), 1) << input;
    }
    for (const char* input : {"n\n", "No\n", ""}) {
        EXPECT_EQ(confirm(input), 0) << input;
    }
}

// A script's line that answers nothing is no, is told, and is still there.
TEST_F(ProcessTest, LinesThatAnswerNothing) {
    for (const std::string line : {"", "yess", "web show"}) {
        int answer = -1;
        std::string next;
        const support::Output output = Capture(
            [&] {
                answer = shell_get_user_confirmation("Sure?");
                EXPECT_EQ(script_input::ReadLine(next), script_input::Reading::kLine);
            },
            line + "\ny\n");
        EXPECT_EQ(answer, 0) << line;
        EXPECT_EQ(next, line);
        EXPECT_NE(output.err.find("does not answer the question, which counts as no\n"), std::string::npos);
    }
}

TEST_F(ProcessTest, SignalsWhileAProgramRuns) {
    const auto before = std::signal(SIGCHLD, SIG_IGN); // would take the status from us
    EXPECT_EQ(shell_spawn("/bin/sh", "-c", "exit 3", nullptr), 3);
    EXPECT_EQ(std::signal(SIGCHLD, before), SIG_IGN);
    EXPECT_EQ(shell_spawn("/bin/sh", "-c", "kill -INT $PPID; kill -INT $$", nullptr), 128 + SIGINT);
}

TEST_F(ProcessTest, RecordedProcessIds) {
    const auto read = [](const std::string& text, const std::string& message) {
        WriteFile("/run/test.pid", text);
        pid_t pid = -1;
        EXPECT_EQ(Capture([&] { EXPECT_EQ(read_pid("test", true), pid = read_pid("test", false)); }).err,
                  message);
        return pid;
    };
    EXPECT_EQ(read("123\n", ""), 123);
    for (const char* text : {"0\n", "-5\n", "12a\n", "12 13\n", "", "99999999999\n"}) {
        EXPECT_EQ(read(text, "/run/test.pid: no process ID\n"), 0) << text;
    }
    EXPECT_EQ(read(std::string(100, '1'), "/run/test.pid: failed to read: File too large\n"), 0);
    WriteFile("/run/test.pid", "123\n");
    EXPECT_EQ(read_pid("../run/test", true), 0);
    EXPECT_EQ(read_pid("none", false), 0);
    EXPECT_TRUE(check_pid(getpid()));
    EXPECT_FALSE(check_pid(0) || check_pid(-1));
}

} // namespace
