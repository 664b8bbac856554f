#pragma once

#include "tests/support/command_test.h"

#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

// An appliance with its routing daemons: the working stand-in, whose running configuration can be watched, or
// a recorder, to which a test gives answers_ or queues them.
class RoutingAppliance : public CommandTest {
protected:
    static constexpr const char* kVtysh = "/usr/bin/vtysh";
    static constexpr const char* kListHead =
        "Destination      Netmask          Next hop         Distance Weight\n"
        "-----------      -------          --------         -------- ------\n";

    RoutingAppliance() {
        const support::Result result =
            support::RunProgram({SOURCE_FOLDER "/reference/routing/install", BUILD_FOLDER});
        EXPECT_EQ(result.status, 0) << result.err;
        WriteProtected(path_list::common_settings, "");
        WriteRecord("");
    }

    void WatchDaemon(const std::string& daemon) {
        const std::string path = "/run/quagga/" + daemon + ".running";
        Watch(daemon, [path] { return support::Exists(path) ? support::ReadFile(path) : ""; });
    }

    // Runs a command that succeeds or not, with these answers to its questions.
    static support::Output Do(bool expected, const std::function<bool()>& command,
                              const std::string& answers = "") {
        return support::Capture([&] { EXPECT_EQ(command(), expected); }, answers);
    }

    // Runs lines of a daemon's configuration mode in the stand-in.
    static void Configure(const std::vector<std::string>& lines, const std::string& daemon = "zebra") {
        support::Arguments arguments{kVtysh, "-d", daemon, "-c", "configure terminal"};
        for (const std::string& line : lines) {
            arguments.insert(arguments.end(), {"-c", line});
        }
        arguments.insert(arguments.end(), {"-c", "end", "-c", "write file"});
        const support::Result result = support::RunProgram(arguments);
        EXPECT_EQ(result.status, 0) << result.out << result.err;
    }

    static std::string Show(const std::string& line, const std::string& daemon = "zebra") {
        return support::RunProgram({kVtysh, "-d", daemon, "-c", line}).out;
    }

    // The lines of the running configuration that begin so.
    static std::string Configured(const std::string& beginning) {
        const std::string text = "\n" + Show("show running-config");
        std::string found;
        for (std::size_t start = 0; (start = text.find("\n" + beginning, start)) != text.npos; ++start) {
            found += text.substr(start + 1, text.find('\n', start + 1) - start);
        }
        return found;
    }

    // A line whose output can't be written.
    void PlayOnFullDisk(const std::string& line, const Call& call) {
        Play(line + " > /dev/full", [&] {
            const int output = dup(STDOUT_FILENO), full = open("/dev/full", O_WRONLY | O_CLOEXEC);
            std::fflush(stdout);
            dup2(full, STDOUT_FILENO);
            close(full);
            const bool done = call();
            dup2(output, STDOUT_FILENO);
            close(output);
            return done;
        });
    }

    // From now on a recorder stands in the daemons' place, which says this to each command, in the order of
    // its calls.
    void AnswerEach(const Lines& texts) {
        support::Record(kVtysh);
        answers_[kVtysh] = texts;
    }

    // From now on a recorder answers in the daemons' place, with these texts in turn.
    static void Answer(const std::vector<support::Answer>& answers) {
        support::Record(kVtysh);
        for (const support::Answer& answer : answers) {
            support::Queue(kVtysh, answer);
        }
    }
};
