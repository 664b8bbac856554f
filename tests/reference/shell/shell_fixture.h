#pragma once

#include "tests/support/appliance.h"

#include <sstream>
#include <string>

// An appliance as the sample settings say, with the real shell and all that it drives.
class ShellTest : public support::Appliance {
protected:
    static constexpr const char* kShell = "/usr/bin/conf-shell";
    static constexpr const char* kDhcpSettings = "/mnt/main/etc/settings/dhcp-server.xml";

    ShellTest() {
        const support::Result booted =
            support::RunProgram({SOURCE_FOLDER "/reference/boot", BUILD_FOLDER, "true"});
        EXPECT_EQ(booted.status, 0) << booted.err;
    }

    static support::Result RunLine(const std::string& line) {
        return support::RunProgram({kShell, "-c", line});
    }

    // Runs a shell into a transcript, which is compared with an expected one:
    //     $ conf-shell -c 'web show'     the run, "< web show" a line of its input
    //     out ...  err ...               what it wrote
    //     exit 1
    void Play(const support::Arguments& arguments, const std::string& input = "") {
        transcript_ << "$ conf-shell";
        for (const std::string& argument : arguments)
            transcript_ << ' ' << (argument.find(' ') == std::string::npos ? argument : "'" + argument + "'");
        transcript_ << '\n';
        Write("<", input);
        support::Arguments line{kShell};
        line.insert(line.end(), arguments.begin(), arguments.end());
        const support::Result result = support::RunProgram(line, input);
        Write("out", result.out);
        Write("err", result.err);
        transcript_ << "exit " << result.status << '\n';
    }

    void Write(const std::string& mark, const std::string& text) {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            transcript_ << mark << ' ' << line << '\n';
    }

    void ExpectTranscript(const std::string& name) {
        support::WriteFile("/tmp/transcript", transcript_.str());
        support::ExpectGolden("/tmp/transcript", "shell/" + name + ".txt");
    }

private:
    std::ostringstream transcript_;
};
