#pragma once

#include "platform/guards.h"
#include "platform/path_list.h"
#include "tests/support/appliance.h"

#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

constexpr const char* kClusterFile = "/etc/failover.ini";
constexpr const char* kClusterGuard = "/etc/failover.ini.crg";
const support::LogLine kDamagedRecord = {
    3, "/mnt/main/etc/local.conf: the file does not match its guard /mnt/main/etc/local.conf.crg"};
constexpr const char* kProgram = "/sbin/failover";

// What one call of a command does that anybody can see.
struct Effect {
    bool done = true;
    support::Output output = {};
    std::vector<support::LogLine> log = {};
    std::vector<std::string> commands = {};
};

// A node with one configured channel, one that nobody has configured yet, and a third interface.
class FailoverTest : public support::Appliance {
protected:
    using Log = std::vector<support::LogLine>;

    FailoverTest() {
        setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
        WriteRecord("ETH1_IP 192.168.1.1\nETH1_MASK 255.255.255.0\nETH1_BROADCAST 192.168.1.255\n"
                    "ETH2_IP 192.168.2.1\nETH2_MASK 255.255.255.0\nETH2_BROADCAST 192.168.2.255\n");
        WriteProtected(path_list::common_settings, "DHCP_SERVER off\n");
        WriteCluster(Channel("eth1", "192.168.1.3/24") + Channel("eth0", "change_this"));
    }

    static void WriteProtected(const std::string& path, const std::string& text) {
        support::WriteFile(path, text);
        ASSERT_TRUE(
            corvanshell::UpdateGuardFile(path_list::settings_guard.c_str(), 1, path.c_str(), nullptr));
    }
    static void WriteRecord(const std::string& text) { WriteProtected(path_list::local_settings, text); }
    static std::string Channel(const std::string& device, const std::string& address) {
        return "[channel]\ndevice = " + device + "\nactiveip = " + address + "\n";
    }
    static void WriteCluster(const std::string& text) {
        support::WriteFile(kClusterFile, text);
        ASSERT_TRUE(corvanshell::UpdateGuardFile(kClusterGuard, 0, kClusterFile, nullptr));
    }
    // 2 active, 1 passive
    static void JoinCluster(int state) {
        support::WriteFile(path_list::velir_sk_nums, "FO_PARAMS=\"cluster\"\n");
        support::WriteFile("/var/spool/corvan/failoverstat", "state\n" + std::to_string(state) + "\n");
    }

    // Expects the call, answered `input` at its questions, to do just this.
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
    void ExpectRefusal(const std::function<bool()>& call, Effect effect) {
        effect.done = false;
        const support::Snapshot before = support::TakeSnapshot();
        Expect(call, effect);
        support::ExpectUnchanged(before);
    }
};

// The call, with a terminal as its standard input where `input` was typed.
inline bool OnTerminal(const std::string& input, const std::function<bool()>& call) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
    const int slave = open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_EQ(write(master, input.data(), input.size()), static_cast<ssize_t>(input.size()));
    EXPECT_EQ(dup2(slave, STDIN_FILENO), STDIN_FILENO);
    const bool done = call();
    close(slave);
    close(master);
    return done;
}
