#include "commands/failover/report.h"
#include "platform/shell_tree.h"
#include "records/cluster_edit.h"
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
        for (const char* form : {"start", "start active", "start passive", "stop"})
            Type({std::string("failover ") + form + why});
    }
};

TEST_F(ClusterCommandsTest, StartAndStop) {
    Queue(kProgram, {.out = "its status is not examined\n", .status = 3});
    PlayControls();
    {
        const support::Daemon holder = support::HoldLock(path_list::critops_lock, true);
        PlayControls("   # locked");
    }
    ASSERT_EQ(rename(path_list::critops_lock.c_str(), "/run/critops"), 0);
    ASSERT_EQ(mkdir(path_list::critops_lock.c_str(), 0755), 0);
    Type({"failover stop   # no lock can be had"});
    ASSERT_EQ(rmdir(path_list::critops_lock.c_str()), 0);
    const auto start = [&](const std::string& why, const std::string& text) {
        WriteCluster(text);
        Type({"failover start   # " + why});
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
    Type({"failover start   # an edit was broken off"});
    {
        const support::Daemon editor = support::HoldLock(corvanshell::kClusterEditLock, true);
        Type({"failover start   # an edit is open"});
    }
    WriteFile(path_list::local_settings, "HOSTNAME changed\n");
    start("settings damaged", good);
    WriteFile(kProgram,
              "#!/bin/sh\nflock -n /run/lock/critops.lock echo nobody holds the lock || echo held\n", 0755);
    Type({"failover stop   # is the lock held?"});
    unlink(kProgram);
    Type({"failover stop   # no program",
          "failover view -b 29.02.2024-07:08:09 -e 01.03.2024-00:00:00   # no program"});
    ExpectTranscript("failover/start_stop");
}

TEST_F(ClusterCommandsTest, Reports) {
    Record("/sbin/textpager.sh");
    Type({"failover show router-config", "failover config router ip", "failover config router user",
          "failover config router active-config", "failover config router passive-config",
          "failover show config", "failover show info"});
    Shell::Get().SetMode(1);
    WriteFile("/run/failoverd.pid", "999999\n"); // of a process that is gone
    Type({"failover show info   # mode 1"});
    WriteFile("/run/failoverd.pid", std::to_string(getpid()) + "\n");
    Type({"failover show info   # daemon runs"});
    ExpectTranscript("failover/reports");
}

TEST_F(ClusterCommandsTest, CountsConnections) {
    const std::string command = "failover show sync-connections";
    Record("/sbin/conntrackd");
    WriteCluster("#syncconnections = yes\nsyncconnections = yes, no\n");
    Type({command + "   # switched off"});
    WriteCluster("syncconnections=YES  # all\n");
    Queue(kSearch, {.status = 1});
    Type({command + "   # no daemon"});
    for (const int state : {2, 1}) {
        JoinCluster(state);
        Queue("/sbin/conntrackd", {.out = "one\ntwo\n"});
        Type({command + "   # state " + std::to_string(state)});
    }
    WriteFile("/usr/bin/wc", "#!/bin/sh\ncat > /dev/null\nexit 1\n", 0755);
    Type({command + "   # no count"});
    ExpectTranscript("failover/connections");
}

TEST_F(ClusterCommandsTest, View) {
    const DateTime leap_day = {2024, 2, 29, 7, 8, 9};
    const std::string day = "29.02.2024-07:08:09";
    const std::string later = "01.03.2024-00:00:00";
    const std::string future = "01.01.9999-00:00:00";
    const std::pair<std::string, std::string> periods[] = {
        {day, later},
        {day, day},
        {later, day},
        {day, future},
        {future, day},
        {"29.02.2023-00:00:00", day},
        {day, "01.13.2024-00:00:00"},
        {day, "29.02.2024"},
    };
    for (const auto& [begin, end] : periods)
        Type({"failover view -b " + begin + " -e " + end});
    // What is no month to the calendar's own small number.
    Play("failover view   # day 257", [&] { return View({2024, 1, 257}, leap_day); });
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
        Type({"failover show active-addresses   # " + why});
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
    Type({"failover show active-addresses   # no file"});
    ExpectTranscript("failover/address_check");
}

} // namespace
} // namespace failover
