#pragma once

#include "front/probes/xml.h"
#include "platform/guards.h"
#include "platform/path_list.h"
#include "tests/support/appliance.h"

#include <cstdlib>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

// What one call of a command does that anybody can see.
struct Effect {
    bool done = true;
    support::Output output = {};
    std::vector<support::LogLine> log = {};
    std::vector<std::string> commands = {};
};

// An appliance without DHCP server and relay, whose scripts are recorders.
class CommandTest : public support::Appliance {
protected:
    using Log = std::vector<support::LogLine>;

    CommandTest() {
        setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
        InitXml();
        for (const char* unit : {"dhcp-server", "dhcp-relay"})
            (void)unlink(SettingsFile(unit).c_str()); // the samples
    }
    ~CommandTest() override { CleanupXml(); }

    static std::string SettingsFile(const std::string& unit) {
        return "/mnt/main/etc/settings/" + unit + ".xml";
    }
    static void WriteProtected(const std::string& path, const std::string& text) {
        support::WriteFile(path, text);
        ASSERT_TRUE(
            corvanshell::UpdateGuardFile(path_list::settings_guard.c_str(), 1, path.c_str(), nullptr));
    }
    static void WriteRecord(const std::string& text) { WriteProtected(path_list::local_settings, text); }

    // Expects the call, answered `input` at its question, to do just this.
    void Expect(const std::function<bool()>& call, const Effect& effect, const std::string& input = "") {
        support::ForgetCommands();
        (void)TakeLog();
        bool done = !effect.done;
        EXPECT_EQ(support::Capture([&] { done = call(); }, input), effect.output);
        EXPECT_EQ(done, effect.done);
        EXPECT_EQ(TakeLog(), effect.log);
        support::ExpectCommands(effect.commands);
    }
    // The same of a call that must leave everything on disk as it was.
    void ExpectRefusal(const std::function<bool()>& call, Effect effect, const std::string& input = "") {
        effect.done = false;
        const support::Snapshot before = support::TakeSnapshot();
        Expect(call, effect, input);
        support::ExpectUnchanged(before);
    }
};
