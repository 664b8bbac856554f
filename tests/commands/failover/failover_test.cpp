#include "commands/failover/address_check.h"
#include "commands/failover/backups.h"
#include "commands/failover/report.h"
#include "commands/failover/start_stop.h"
#include "platform/shell_tree.h"
#include "tests/commands/failover/failover_fixture.h"

namespace failover {
namespace {

using corvanshell::DateTime;
using support::Queue;
using support::Record;
using support::WriteFile;

class ClusterCommandsTest : public FailoverTest {
protected:
    void PlayControls(const std::string& why = "") {
        Play("failover start" + why, [] { return Start(StartForm::kPlain); });
        Play("failover start active" + why, [] { return Start(StartForm::kActive); });
        Play("failover start passive" + why, [] { return Start(StartForm::kPassive); });
        Play("failover stop" + why, Stop);
    }
};

TEST_F(ClusterCommandsTest, StartAndStop) {
    Queue(kProgram, {.out = "its status is not examined\n", .status = 3});
    PlayControls();
    {
        const support::Daemon holder = support::HoldLock(path_list::critops_lock, true);
        PlayControls("   # locked");
    }
    const auto start = [&](const std::string& why, const std::string& text) {
        WriteCluster(text);
        Play("failover start   # " + why, [] { return Start(StartForm::kPlain); });
    };
    start("one interface with two channels",
          Channel("eth1", "192.168.1.3/24") + Channel("eth1:1", "192.168.1.9/24"));
    {
        const support::Daemon holder = support::HoldLock(path_list::settings_lock, true);
        start("no interface, and the settings are not asked", "[sendconfig]\n");
    }
    const std::string bad[] = {
        "[sendconfig]\n",
        Channel("eth1", "192.168.1.3"),
        Channel("eth1", "192.168.1.3/33"),
        Channel("eth1", "192.168.1.3/24") + "[channel]\ndevice = eth0\n",
        Channel("eth1", "192.168.2.9/24"),
        Channel("eth1", "10.0.0.1/24") + Channel("eth0", "10.0.0.2/24"),
    };
    for (const std::string& text : bad) {
        start(text.substr(text.rfind(' ') + 1, text.rfind('\n') - text.rfind(' ') - 1), text);
    }
    const std::string good = Channel("eth1", "192.168.1.3/24");
    WriteCluster(good);
    WriteFile(kClusterFile, good + "\n"); // and its guard not
    for (const char* backup : {"~", ".crg~"})
        WriteFile(kClusterFile + backup, "");
    Play("failover start   # an edit was broken off", [] { return Start(StartForm::kPlain); });
    {
        const support::Daemon editor = support::HoldLock(kEditLock, true);
        Play("failover start   # an edit is open", [] { return Start(StartForm::kPlain); });
    }
    WriteFile(path_list::local_settings, "HOSTNAME changed\n");
    start("settings damaged", good);
    unlink(kProgram);
    Play("failover stop   # no program", Stop);
    ExpectTranscript("failover/start_stop");
}

TEST_F(ClusterCommandsTest, Reports) {
    Record("/sbin/textpager.sh");
    for (const RouterAction action : {RouterAction::kShowConfig, RouterAction::kIp, RouterAction::kUser,
                                      RouterAction::kActiveConfig, RouterAction::kPassiveConfig})
        Play("failover router action", [&] {
            LogRouterAction(action);
            return true;
        });
    Play("failover show config", ShowConfig);
    Play("failover show info", ShowInfo);
    Shell::Get().SetMode(1);
    WriteFile("/run/failoverd.pid", "999999\n"); // of a process that is gone
    Play("failover show info   # mode 1", ShowInfo);
    WriteFile("/run/failoverd.pid", std::to_string(getpid()) + "\n");
    Play("failover show info   # daemon runs", ShowInfo);
    ExpectTranscript("failover/reports");
}

TEST_F(ClusterCommandsTest, CountsConnections) {
    const std::string command = "failover show sync-connections";
    Record("/sbin/conntrackd");
    WriteCluster("#syncconnections = yes\nsyncconnections = yes, no\n");
    Play(command + "   # switched off", ShowSyncConnections);
    WriteCluster("syncconnections=YES  # all\n");
    Queue(kSearch, {.status = 1});
    Play(command + "   # no daemon", ShowSyncConnections);
    for (const int state : {2, 1}) {
        JoinCluster(state);
        Queue("/sbin/conntrackd", {.out = "one\ntwo\n"});
        Play(command + "   # state " + std::to_string(state), ShowSyncConnections);
    }
    WriteFile("/usr/bin/wc", "#!/bin/sh\ncat > /dev/null\nexit 1\n", 0755);
    Play(command + "   # no count", ShowSyncConnections);
    ExpectTranscript("failover/connections");
}

TEST_F(ClusterCommandsTest, View) {
    const DateTime leap_day = {2024, 2, 29, 7, 8, 9};
    const DateTime future = {9999, 1, 1};
    const std::pair<DateTime, DateTime> periods[] = {
        {leap_day, {2024, 3, 1}},  {leap_day, leap_day},       {{2024, 3, 1}, leap_day},
        {leap_day, future},        {future, leap_day},         {{2023, 2, 29}, leap_day},
        {leap_day, {2024, 13, 1}}, {{2024, 1, 257}, leap_day},
    };
    for (const auto& [begin, end] : periods)
        Play("failover view", [from = begin, to = end] { return View(from, to); });
    ExpectTranscript("failover/view");
    DateTime parsed;
    EXPECT_TRUE(ParseDateTime("29.02.2024-07:08:09", parsed));
    for (const char* text : {"29.02.2024", "29.02.2024-24:08:09", "29.02.2024-07:60:09",
                             "29.02.2024-07:08:60", "-9.02.2024-07:08:09", "29.02.2024-07:08:09 "})
        EXPECT_EQ(support::Capture([&] { EXPECT_FALSE(ParseDateTime(text, parsed)); }).err,
                  "wrong date and time: expected <day>.<month>.<year>-<hour>:<minute>:<second>\n");
    EXPECT_EQ(parsed, leap_day);
}

TEST_F(ClusterCommandsTest, AddressCheck) {
    const char* const arping = "/usr/bin/arping";
    const std::string one = Channel("eth1", "192.0.2.1/24");
    const auto check = [&](const std::string& why, const std::string& text) {
        WriteCluster(text);
        Play("address check   # " + why, CheckActiveAddresses);
    };
    check("single mode", one);
    JoinCluster(2);
    check("active node", one);
    // The real program's words.
    const support::Peer peer;
    support::MakeVeth("v0", "v1", peer);
    const std::string far = "ip link set v1 address 02:00:00:00:00:07 && ip address add 192.0.2.1/24 dev v1";
    ASSERT_EQ(support::RunProgram(peer.Inside({"sh", "-c", far})).status, 0);
    JoinCluster(1);
    check("a machine of the network answers", Channel("v0", "192.0.2.1/24"));

    Record(arping);
    check("behind the channels", "[sendconfig]\n" + one);
    check("of no channel", "[other]\nactiveip = 192.0.2.1\n");
    check("address without a device", "[channel]\nactiveip = 192.0.2.1/24\n");
    check("device adds a command", Channel("eth1;reboot", "192.0.2.1"));
    check("address adds a command", Channel("eth1", "`reboot`/24"));
    Queue(arping, {.status = 2});
    check("arping fails, and an address has no device", one + "activeip = 192.0.2.2\n");
    Queue(arping, {.out = "ARPING\nUnicast reply from 192.0.2.1 [02:00:00:00:00:01]  0.7ms\n", .status = 1});
    check("one of two answers", Channel("eth1:0  # outer", "192.0.2.1/24") + Channel("eth0", "198.51.100.1"));
    unlink(kClusterFile.c_str());
    Play("address check   # no file", CheckActiveAddresses);
    ExpectTranscript("failover/address_check");
}

} // namespace
} // namespace failover
