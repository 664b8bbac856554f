#include "commands/failover/address_check.h"
#include "commands/failover/report.h"
#include "commands/failover/start_stop.h"
#include "platform/shell_tree.h"
#include "tests/commands/failover/failover_fixture.h"

#include <ctime>

namespace failover {
namespace {

using corvanshell::DateTime;
using support::Queue;
using support::Record;
using support::WriteFile;

struct ControlCase {
    std::function<bool()> call;
    std::string command;
    std::string log;
};

const ControlCase kControls[] = {
    {[] { return Start(StartForm::kPlain); }, "failover start", "command: failover start"},
    {[] { return Start(StartForm::kActive); }, "failover start active", "command: failover start active"},
    {[] { return Start(StartForm::kPassive); }, "failover start passive", "command: failover start passive"},
    {[] { return Stop(); }, "failover stop", "<F_STP> Command: failover stop"},
};

TEST_F(FailoverTest, StartsAndStops) {
    Record(kProgram);
    for (const ControlCase& row : kControls) {
        Queue(kProgram, {.out = "said\n", .status = 3}); // its status is not examined
        Expect(row.call,
               {.output = {"said\n", ""}, .log = {{6, row.log}}, .commands = {"/sbin/" + row.command}});
    }
    const support::Daemon holder = support::HoldLock(path_list::critops_lock, true);
    for (const ControlCase& row : kControls)
        ExpectRefusal(row.call,
                      {.output = {"", "cannot run '" + row.command +
                                          "' because another critical operation has been running\n"},
                       .log = {{6, row.log}}});
}

TEST_F(FailoverTest, BadAddressesDoNotStart) {
    Record(kProgram);
    const std::string prefix = "failover address validation: ";
    const std::string no_broadcasts =
        prefix + "cannot calculate broadcasts for failover active ip addresses\n";
    const std::string failed = "failover address validation failed\n";
    const std::string cases[][2] = {
        {"[sendconfig]\n", prefix + "cannot find active ifaces in failover.ini\n"},
        {Channel("eth1", "192.168.1.3"), no_broadcasts},
        {Channel("eth1", "192.168.1.300/24"), no_broadcasts},
        {Channel("eth1", "192.168.1.3/33"), no_broadcasts},
        {Channel("eth1", "192.168.1.3/24") + "[channel]\ndevice = eth0\n",
         prefix + "active IP address count does not match active interfaces count in failover.ini\n"},
        {Channel("eth1", "192.168.2.9/24"),
         "broadcast 192.168.2.255 on interface eth1 crossing with eth2\n" + failed},
        {Channel("eth1", "10.0.0.1/24") + Channel("eth0", "10.0.0.2/24"),
         "broadcast 10.0.0.255 on interface eth1 crossing with eth0 from failover.ini\n" + failed},
    };
    for (const auto& [text, error] : cases) {
        SCOPED_TRACE(text);
        WriteCluster(text);
        ExpectRefusal(kControls[0].call,
                      {.output = {"", error + "failed to start failover\n"}, .log = {{6, kControls[0].log}}});
    }
    WriteCluster(Channel("eth1", "192.168.1.3/24"));
    WriteFile(path_list::local_settings, "HOSTNAME changed\n"); // and its guard not
    ExpectRefusal(kControls[0].call, {.output = {"", failed + "failed to start failover\n"},
                                      .log = {{6, kControls[0].log}, kDamagedRecord}});
}

TEST_F(FailoverTest, RouterActionsAreLogged) {
    const std::pair<RouterAction, std::string> cases[] = {
        {RouterAction::kShowConfig, "<F_SH_RC> Command failover show router-config"},
        {RouterAction::kIp, "<FROUTER_IP> Command failover config router ip"},
        {RouterAction::kUser, "<FROUTER_USER> Command failover config router user"},
        {RouterAction::kActiveConfig, "<FROUTER_ACT> Command failover config router active-config"},
        {RouterAction::kPassiveConfig, "<FROUTER_PASS> Command failover config router passive-config"},
    };
    for (const auto& [action, log] : cases) {
        LogRouterAction(action);
        EXPECT_EQ(TakeLog(), (Log{{6, log}}));
    }
}

TEST_F(FailoverTest, ShowsStateAndConfig) {
    Record(kProgram);
    Record("/sbin/textpager.sh");
    const Log info = {{6, "<F_INF>  Command: failover show info"}};
    Expect(ShowInfo, {.output = {"Failover is in single mode\n", ""}, .log = info});
    Shell::Get().SetMode(1);
    WriteFile("/run/failoverd.pid", "999999\n"); // of a process that is gone
    Expect(ShowInfo, {.output = {"Failover is in cluster mode\n", ""}, .log = info});
    WriteFile("/run/failoverd.pid", std::to_string(getpid()) + "\n");
    Expect(ShowInfo, {.log = info, .commands = {"/sbin/failover info"}});
    Expect(ShowConfig, {.log = {{6, "<F_SH_CONF> Command failover show info"}},
                        .commands = {"/sbin/textpager.sh /etc/failover.ini"}});
}

TEST_F(FailoverTest, CountsConnections) {
    const std::string cache = "/sbin/conntrackd";
    const std::string search = "start-stop-daemon";
    for (const std::string& program : {cache, "/usr/sbin/" + search})
        Record(program);
    const std::string asked = "/usr/sbin/" + search + " -K -t -x /sbin/conntrackd";
    const Log log = {{6, "command: failover show sync-connections"}};
    WriteCluster("#syncconnections = yes\nsyncconnections = yes, no\n");
    Expect(ShowSyncConnections,
           {.output = {"No connections to synchronize due to disabled synchronization.\n", ""}, .log = log});

    WriteCluster("syncconnections=YES  # all\n");
    Queue("/usr/sbin/" + search, {.status = 1});
    ExpectRefusal(
        ShowSyncConnections,
        {.output = {"",
                    "Failed to get synchronized connections count since daemon is not configured/started.\n"},
         .log = log,
         .commands = {asked}});
    const std::pair<int, std::string> nodes[] = {{2, " -i"}, {1, " -e"}};
    for (const auto& [state, option] : nodes) {
        JoinCluster(state);
        Queue(cache, {.out = "one\ntwo\n"});
        Expect(ShowSyncConnections, {.output = {"Synchronized connections count\t2\n", ""},
                                     .log = log,
                                     .commands = {asked, cache + option}});
    }
    Record("/usr/bin/wc");
    Queue("/usr/bin/wc", {.status = 1});
    support::ForgetCommands();
    const support::Output output = support::Capture([] { EXPECT_FALSE(ShowSyncConnections()); });
    EXPECT_EQ(output.err, "Failed to get connections to synchronize.\n");
}

DateTime InHours(int hours) {
    const std::time_t moment = std::time(nullptr) + hours * 3600;
    std::tm local = {};
    localtime_r(&moment, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

TEST_F(FailoverTest, View) {
    Record(kProgram);
    const DateTime leap_day = {2024, 2, 29, 7, 8, 9};
    const std::string line = "failover view -b 29.02.2024-07:08:09 -e 01.03.2024-00:00:00";
    Expect(
        [&] {
            return View(leap_day, {2024, 3, 1});
        },
        {.log = {{6, "<F_VIEW> Command: " + line}}, .commands = {"/sbin/" + line}});
    struct Case {
        DateTime begin, end;
        std::string error;
    };
    const std::string future = "Specified date/time is in the future.\n";
    const std::string order = "Begin time must be earlier than an end time.\n";
    const std::string calendar = "Day of month is not valid for year\n";
    const Case cases[] = {
        {leap_day, leap_day, order},
        {{2024, 3, 1}, leap_day, order},
        {leap_day, InHours(2), future},
        {InHours(2), leap_day, future},
        {{2023, 2, 29}, {2024, 1, 1}, calendar},
        {leap_day, {2024, 4, 31}, calendar},
        {{2024, 13, 1}, leap_day, calendar},
        {{2024, 1, 0}, leap_day, calendar},
        {{2024, 1, 257}, leap_day, calendar},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(support::Capture([&] { EXPECT_FALSE(View(row.begin, row.end)); }).err, row.error);
        EXPECT_EQ(support::Commands().size(), 1U);
    }
    DateTime parsed;
    EXPECT_TRUE(ParseDateTime("29.02.2024-07:08:09", parsed));
    EXPECT_EQ(parsed, leap_day);
    for (const char* text : {"", "29.02.2024", "29.02.2024-24:08:09", "29.02.2024-07:60:09",
                             "29.02.2024-07:08:60", "-9.02.2024-07:08:09", "29.02.2024-07:08:09 ", "a"}) {
        EXPECT_EQ(support::Capture([&] { EXPECT_FALSE(ParseDateTime(text, parsed)); }).err,
                  "wrong date and time: expected <day>.<month>.<year>-<hour>:<minute>:<second>\n");
        EXPECT_EQ(parsed, leap_day) << text;
    }
}

class AddressCheckTest : public FailoverTest {
protected:
    const std::string progress_ = "Address check is in progress ...\n";
    const std::string arping_ = "/usr/bin/arping";

    void ExpectRefused(const std::string& text, const support::Output& output,
                       const std::vector<std::string>& commands = {}) {
        SCOPED_TRACE(text);
        WriteCluster(text);
        ExpectRefusal(CheckActiveAddresses, {.output = output, .commands = commands});
    }
};

TEST_F(AddressCheckTest, Refusals) {
    Record(arping_);
    const std::string one = Channel("eth1", "192.0.2.1/24");
    ExpectRefused(one, {"", "Use it on passive cluster node only\n"});
    JoinCluster(2);
    ExpectRefused(one, {"", "Use it on passive cluster node only\n"});
    JoinCluster(1);
    ExpectRefused("[sendconfig]\n" + one, {"", "active IP not set in failover.ini\n"});
    ExpectRefused("[other]\nactiveip = 192.0.2.1\n", {"", "active IP not set in failover.ini\n"});
    const std::string counts = "mac addresses count doesn't match devices count\n";
    ExpectRefused("[channel]\nactiveip = 192.0.2.1/24\n", {progress_, counts});
    ExpectRefused(Channel("eth1;reboot", "192.0.2.1"),
                  {progress_, "failed to run /usr/bin/arping -c 3 -D 192.0.2.1 -I eth1;reboot\n" + counts});
    ExpectRefused(Channel("eth1", "`reboot`/24"),
                  {progress_, "failed to run /usr/bin/arping -c 3 -D `reboot` -I eth1\n" + counts});
    Queue(arping_, {.status = 2});
    const std::string line = arping_ + " -c 3 -D 192.0.2.1 -I eth1";
    ExpectRefused(one, {progress_, "failed to run " + line + "\n" + counts}, {line});
    unlink(kClusterFile);
    ExpectRefusal(CheckActiveAddresses,
                  {.output = {"", "/etc/failover.ini: failed to open file: No such file or directory\n"}});
}

TEST_F(AddressCheckTest, Table) {
    JoinCluster(1);
    Record(arping_);
    Queue(arping_, {.out = "ARPING 192.0.2.1\nUnicast reply from 192.0.2.1 [02:00:00:00:00:01]  0.7ms\n",
                    .status = 1});
    WriteCluster(Channel("eth1:0  # outer", "192.0.2.1/24") + Channel("eth0", "198.51.100.1"));
    Expect(CheckActiveAddresses,
           {.output = {progress_ + "Interface\tIP-address\tMAC-address\n"
                                   "eth1:0\t192.0.2.1\t02:00:00:00:00:01\neth0\t198.51.100.1\tNA\n",
                       ""},
            .commands = {arping_ + " -c 3 -D 192.0.2.1 -I eth1", arping_ + " -c 3 -D 198.51.100.1 -I eth0"}});
}

// The real program's words.
TEST_F(AddressCheckTest, LiveAnswer) {
    JoinCluster(1);
    WriteFile(arping_, "#!/bin/sh\nexec busybox arping \"$@\"\n", 0755);
    const support::Peer peer;
    support::MakeVeth("v0", "v1", peer);
    ASSERT_EQ(support::RunProgram(peer.Inside({"sh", "-c",
                                               "ip link set v1 address 02:00:00:00:00:07; "
                                               "ip address add 192.0.2.1/24 dev v1"}))
                  .status,
              0);
    WriteCluster(Channel("v0", "192.0.2.1/24"));
    Expect(CheckActiveAddresses,
           {.output = {progress_ + "Interface\tIP-address\tMAC-address\nv0\t192.0.2.1\t02:00:00:00:00:07\n",
                       ""}});
}

} // namespace
} // namespace failover
