#pragma once

#include "tests/support/command_test.h"

#include <string>
#include <unistd.h>
#include <vector>

// An appliance with the stand-in's terminal, whose running configuration the transcript watches, and a daemon
// that lives and finds nothing.
class DgdTest : public CommandTest {
protected:
    static constexpr const char* kVtysh = "/usr/bin/vtysh";
    static constexpr const char* kControl = "/sbin/dgd.sh";
    static constexpr const char* kSaved = "/etc/quagga/dgdd.conf";

    DgdTest() {
        Run({SOURCE_FOLDER "/reference/routing/install", BUILD_FOLDER});
        Replace("/usr/sbin/dgdd", "exec 9>> /run/quagga/dgdd.pid; flock 9; trap '' HUP\n"
                                  "sleep 1000 > /dev/null 2>&1 & echo $! > /run/quagga/dgdd.pid\n");
        WriteProtected(path_list::common_settings, "");
        WriteRecord("");
    }

    static void Run(const support::Arguments& arguments) {
        const support::Result result = support::RunProgram(arguments);
        EXPECT_EQ(result.status, 0) << result.out << result.err;
    }
    void Start() {
        Run({kControl, "start"});
        Watch("dgdd", [] {
            return support::RunProgram({kVtysh, "-d", "dgdd", "-c", "show running-config"}).out;
        });
    }
    // A shell script in the place of a program, which may be a link to where it was built.
    static void Replace(const char* program, const std::string& script) {
        EXPECT_EQ(unlink(program), 0);
        support::WriteFile(program, "#!/bin/sh\n" + script, 0755);
    }
    // Lines of a daemon's configuration mode.
    static void Configure(const std::string& daemon, const support::Arguments& lines) {
        support::Arguments arguments{kVtysh, "-d", daemon, "-c", "configure terminal"};
        for (const std::string& line : lines)
            arguments.insert(arguments.end(), {"-c", line});
        arguments.insert(arguments.end(), {"-c", "end", "-c", "write file"});
        Run(arguments);
    }

    // From now on recorders answer. A command loads once, and once more behind a change.
    void Record(const std::string& enabled, const std::string& status, const Lines& answers = {}) {
        for (const char* program : {kVtysh, kControl})
            support::Record(program);
        answers_[kControl] = {enabled + "\n", status + "\n", enabled + "\n", status + "\n"};
        answers_[kVtysh] = answers;
    }
};
