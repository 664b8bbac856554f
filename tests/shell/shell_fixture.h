#pragma once

#include "tests/support/appliance.h"

#include <sstream>
#include <string>

// An appliance as the sample settings say, with the real shell and all that it drives.
class ShellTest : public support::Appliance {
protected:
    static constexpr const char* kShell = "/usr/bin/conf-shell";

    ShellTest() {
        const support::Result booted =
            support::RunProgram({SOURCE_FOLDER "/reference/boot", BUILD_FOLDER, "true"});
        EXPECT_EQ(booted.status, 0) << booted.err;
    }

    static support::Result RunLine(const std::string& line) {
        return support::RunProgram({kShell, "-c", line});
    }

    // Plays the runs of tests/golden/shell/<name>.txt again, and compares what comes of them:
    //     $ web show           a line for conf-shell -c
    //     % conf-shell -h      a line for the system's own shell
    //     < y                  standard input of the run above
    //     > protocol: http     what it writes
    //     exit 1               how it ends, when it fails
    // Any other line is a remark.
    static void ExpectSession(const std::string& name) {
        std::istringstream session(support::ReadFile(SOURCE_FOLDER "/tests/golden/shell/" + name + ".txt"));
        std::string played;
        for (std::string line; std::getline(session, line);) {
            if (line.starts_with('>') || line.starts_with("exit "))
                continue;
            played += line + '\n';
            if (!line.starts_with("$ ") && !line.starts_with("% "))
                continue;
            const std::string run = line;
            std::string input;
            while (session.peek() == '<' && std::getline(session, line)) {
                played += line + '\n';
                input += line.substr(2) + '\n';
            }
            played += Run(run, input);
        }
        support::WriteFile("/tmp/session", played);
        support::ExpectGolden("/tmp/session", "shell/" + name + ".txt");
    }

private:
    static std::string Run(const std::string& run, const std::string& input) {
        const std::string program = run[0] == '$' ? "exec conf-shell -c \"$0\" 2>&1" : "eval \"$0\" 2>&1";
        const support::Result result = support::RunProgram({"/bin/sh", "-c", program, run.substr(2)}, input);
        std::istringstream lines(result.out);
        std::string text;
        for (std::string line; std::getline(lines, line);)
            text += line.empty() ? ">\n" : "> " + line + '\n';
        return text + (result.status != 0 ? "exit " + std::to_string(result.status) + "\n" : "");
    }
};
