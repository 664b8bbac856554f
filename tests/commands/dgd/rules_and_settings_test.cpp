#include "commands/dgd/dgd_config.h"
#include "commands/dgd/values.h"
#include "tests/commands/dgd/dgd_fixture.h"

#include <gmock/gmock.h>
#include <unistd.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(DgdTest, ModeSwitchesNowAndWithTheAppliance) {
    Watch("dgd.sh", [] { return support::RunShell("/sbin/dgd.sh enabled; /sbin/dgd.sh status").out; });
    Type({"inet dgd configuration response-time 5", "inet dgd mode odd", "inet dgd mode on",
          "inet dgd mode on", "inet dgd mode of"});
    Run({kControl, "start"});
    Replace(kVtysh, "exit 1\n"); // a daemon that answers nothing
    Type({"inet dgd mode off"});
    Replace(kControl, "echo no\n[ $1 != start ]\n");
    Type({"inet dgd mode on   # and it does not start"});
    JoinCluster(1);
    Type({"inet dgd mode on", "inet show dgd configuration"});
    ExpectTranscript("dgd/mode");
}

TEST_F(DgdTest, Settings) {
    Start();
    Type({
        "inet dgd configuration response-time 120",
        "inet dgd configuration response-time 121",
        "inet dgd configuration interval-time 1",
        "inet dgd configuration interval-time 0",
        "inet dgd configuration retries-count 10",
        "inet dgd configuration retries-count 11",
        "inet dgd configuration syslog-level 4",
        "inet dgd configuration syslog-level 5",
        "inet show dgd configuration",
        "inet dgd configuration syslog-level -1",
        "inet show dgd configuration",
        "inet dgd configuration default < n",
        "inet dgd configuration default < y",
    });
    ExpectTranscript("dgd/settings");
}

TEST_F(DgdTest, RulesFromFirstLineToLast) {
    Start();
    Configure("zebra", {"ip rule p 1024", "set reject"});
    Configure("dgdd", {"next-hop gw", "address 10.0.0.1"});
    Type({
        "inet dgd rule add r match next-hop gw down",
        "inet dgd rule add r action-priority 1 service route command policy active p",
        "inet dgd rule add r action-priority 10 service log gw-is-down",
        "inet dgd rule add r2 match next-hop gw up",
        "inet show dgd rule r",
        "inet show dgd rule",
        "inet show dgd rule r3",
        "inet dgd rule add r match next-hop gw down",
        "inet dgd rule add r action-priority 2 service route command policy active p",
        "inet dgd rule add r action-priority 2 service log gw-is-down",
        "inet dgd rule add r action-priority 1 service log other",
        "inet dgd rule add r action-priority 2 service route command policy active none",
        "inet dgd rule delete r match next-hop gw up",
        "inet dgd rule delete r3 match next-hop gw up",
        "inet dgd rule delete r action-priority 0",
        "inet dgd rule delete r action-priority 1",
        "inet dgd rule delete r match next-hop gw down",
        "inet dgd rule delete r action-priority 10", // a rule without lines goes
        "inet dgd rule clear r2 < n",
        "inet dgd rule clear r2 < y",
        "inet dgd rule clear r2 < y",
    });
    Configure("dgdd", {"dgd-rule r"});
    Type({"inet dgd rule delete r action-priority 1"});
    ExpectTranscript("dgd/rules");
}

TEST_F(DgdTest, ArgumentsThatAreNone) {
    Start();
    Record("yes", "running");
    Type({
        "inet dgd next-hop add 'a b' address 10.0.0.1 check icmp",
        "inet dgd next-hop add a address 10.0.0 check icmp",
        "inet dgd next-hop add a address 10.0.0.1 test-address x check icmp",
        "inet dgd next-hop add a address 10.0.0.1 'check;' icmp",
        "inet dgd next-hop add a address 10.0.0.1 check",
        "inet dgd next-hop add a interface 'eth0|x' check icmp",
        "inet dgd next-hop delete name ''",
        "inet dgd rule add r_1 match next-hop gw up",
        "inet dgd rule delete r match next-hop gw 'u p'",
        "inet dgd rule add r action-priority 1 service route command policy active 'p\\'",
        "inet dgd rule add r action-priority 1 service log 'x\" -c \"no dgd-rule r'",
        "inet dgd rule clear " + std::string(64, 'a'),
    });
    ExpectTranscript("dgd/arguments");
}

// What each command asks and sends, and what comes of a question or a change that is refused: nothing is
// sent behind it.
TEST_F(DgdTest, RefusedLines) {
    Run({kControl, "start"});
    support::Record(kVtysh);
    support::WriteFile(kSaved,
                       "next-hop gw\n!\ndgd-rule r\n match next-hop gw state up\n action 1 zlog a\n!\n"
                       "dgd-rule last\n match next-hop gw state up\n!\n");
    Type({
        "! inet dgd configuration syslog-level 0",
        "! inet dgd next-hop add new address 10.0.0.1 check icmp",
        "inet dgd next-hop add d interface eth1 no-check",
        "! inet dgd next-hop delete name gw",
        "! inet dgd rule add r action-priority 50 service route command policy active p",
        "! inet dgd rule delete r action-priority 1",
        "! inet show dgd next-hop",
        "! inet show dgd rule",
    });
    ExpectTranscript("dgd/refused_lines");
}

// Reports come from the daemon when it runs, and from its file otherwise.
TEST_F(DgdTest, WhatTheReportsAreMadeOf) {
    const std::string rule = "dgd-rule saved\n match next-hop gw state up\n!\n";
    support::WriteFile(kSaved, "next-hop gw\n address 10.0.0.1\n!\n" + rule + "dgd wait-timeout 9\n");
    Record("yes", "stopped");
    Type({"inet show dgd next-hop", "inet show dgd rule", "inet show dgd configuration"});
    const std::string configuration =
        "dyn-next-hop d\nnext-hop gw\nnext-hop\ndgd-rule run\n action 1 zlog a\n"
        "!\ndgd wait-timeout\ndgd fail-count 99999999999999999999\ndgd-rule\n";
    const std::string logging =
        "Stdout logging: level errors\nSyslog logging: level errors, facility daemon\n";
    Record("yes", "running", {logging, configuration, configuration});
    Type({"inet show dgd rule"});
    Record("yes", "running", {logging, configuration});
    Type({"inet show dgd configuration"});
    Record("yes", "running", {"Syslog logging: level", "log syslog odd level\n match next-hop x state up\n"});
    Type({"inet show dgd configuration"});
    unlink(kSaved); // an appliance that has nothing saved yet
    Record("yes", "stopped");
    Type({"inet show dgd next-hop", "inet show dgd rule", "inet show dgd configuration",
          "inet dgd rule delete r action-priority 1"});
    mkdir(kSaved, 0700); // what can't be read
    Type({"inet show dgd next-hop", "inet show dgd configuration"});
    ExpectTranscript("dgd/reports");
}

// The settings lock is held for each load and each change, and not between them.
TEST_F(DgdTest, SettingsLock) {
    Start();
    support::WriteFile("/run/asked", "");
    Watch("lock", [] { return support::ReadFile("/run/asked"); });
    support::WriteFile(kSaved, "dgd-rule r\n match next-hop gw state up\n!\n");
    Replace(kVtysh, "flock -n /run/lock/settings.lock true && free=free || free=held\n"
                    "echo \"$free: $*\" >> /run/asked\n");
    Type({"inet dgd rule clear r < y", "inet dgd next-hop add a address 10.0.0.1 check icmp"});
    const support::Daemon holder = support::HoldLock("/run/lock/settings.lock", false);
    Type({"inet dgd configuration response-time 7"});
    ExpectTranscript("dgd/lock");
}

TEST_F(DgdTest, SectionsAreFoundByWholeWords) {
    support::WriteFile(kSaved, "dgd-rule rr\n match next-hop mygw state up\n action 10 zlog a\n!\n"
                               "dgd-rule r\n match next-hop gw state up\n action 1 zlog abc\n!\n");
    const struct {
        const char *section, *word;
        bool has;
    } cases[] = {{"dgd-rule r", "gw state up", true}, {"dgd-rule rr", "gw state up", false},
                 {"dgd-rule rr", "action 1", false},  {"dgd-rule rr", "action 10", true},
                 {"next-hop gw", "", false},          {"dgd-rule r", "", true},
                 {"dgd-rule r", "zlog a", false}};
    for (const auto& [section, word, has] : cases)
        EXPECT_EQ(dgd::ConfigSectionHas(section, word), has) << section << ": " << word;
}

TEST_F(DgdTest, ValuesOfTheShell) {
    support::WriteFile(kSaved,
                       "next-hop gw\n!\ndyn-next-hop d\n!\ndgd-rule r\n match next-hop gw state up\n!\n");
    EXPECT_THAT(value::ExistingNextHops().list(), ElementsAre("gw", "d"));
    EXPECT_THAT(value::ExistingDgdRules().list(), ElementsAre("r"));
    EXPECT_THAT(value::DGDRequest().list(), ElementsAre("icmp", "tcp80", "tcp443"));
    support::MakeVeth("eth0", "eth1");
    WriteRecord("ETH0_IP 10.0.0.1\nETH0_MASK 255.0.0.0\nETH1_IP dhcp\nETH1_MASK dhcp\nETH2_IP dhcp\n");
    EXPECT_THAT(value::DGDInterface().list(), ElementsAre("eth1", "modem"));
    EXPECT_EQ(value::DgdName().sample(), "DGD name length 1-63, symbols: [A-z][0-9]-");
    EXPECT_EQ(value::DgdLogText().sample(), "DGD log text: length 1-63, symbols: [A-z][0-9]-");

    std::string parsed;
    const detail::in_node<value::DGDRequest, void> request;
    EXPECT_TRUE(request.match("tcp80") && request.partial_match("tcp"));
    EXPECT_FALSE(request.match("tcp") || request.partial_match("udp"));
    EXPECT_TRUE(value::DgdName().parse(std::string(63, 'a'), parsed));
    EXPECT_FALSE(value::DgdName().parse(std::string(64, 'a'), parsed) || value::DgdName().parse("", parsed));
    EXPECT_TRUE(value::DgdNumber().parse("17", parsed) && value::DgdSignedNumber().parse("-1", parsed));
    EXPECT_FALSE(value::DgdNumber().parse("-1", parsed) || value::DgdSignedNumber().parse("1-", parsed));

    EXPECT_EQ(unlink(kSaved), 0);
    EXPECT_EQ(support::Capture([] { EXPECT_THAT(value::ExistingDgdRules().list(), IsEmpty()); }),
              support::Output());
}

} // namespace
