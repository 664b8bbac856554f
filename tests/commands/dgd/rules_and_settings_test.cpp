#include "commands/dgd/commands.h"
#include "commands/dgd/values.h"
#include "tests/commands/dgd/dgd_fixture.h"

#include <gmock/gmock.h>

namespace dgd {
namespace {

using support::Capture;
using support::ExpectCommands;
using support::LogLine;
using support::Output;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST_F(DgdTest, ModeSwitchesNowAndWithTheAppliance) {
    EXPECT_EQ(Do(true, [] { return SetMode("odd"); }).out, "DGD is already disabled.\n");
    EXPECT_EQ(Do(true, [] { return SetMode("on"); }), kNothing);
    EXPECT_EQ(support::RunShell("/sbin/dgd.sh enabled; /sbin/dgd.sh status").out, "yes\nrunning\n");
    EXPECT_THAT(TakeLog(), ElementsAre(LogLine{6, "command: inet dgd mode odd"}, kDone,
                                       LogLine{6, "command: inet dgd mode on"}, kDone));
    EXPECT_EQ(Do(true, [] { return SetMode("on"); }).out, "DGD is already enabled.\n");
    EXPECT_EQ(Do(true, [] { return SetMode("of"); }), kNothing);
    EXPECT_EQ(support::RunShell("/sbin/dgd.sh enabled; /sbin/dgd.sh status").out, "no\nstopped\n");
    support::Record("/sbin/dgd.sh");
    for (const support::Answer& answer : {support::Answer{.out = "no\n"}, {}, {.status = 1}}) {
        support::Queue("/sbin/dgd.sh", answer);
    }
    ExpectRefusals({{[] { return SetMode("on"); }, kFailed}});
    ExpectCommands({"/sbin/dgd.sh enabled", "/sbin/dgd.sh status", "/sbin/dgd.sh start"});
}

TEST_F(DgdTest, Settings) {
    EXPECT_EQ(Do(false, [] { return SetResponseTime(5); }), (Output{"DGD disabled.\n", ""}));
    EXPECT_EQ(support::ReadFile(kDgddFile), "");
    Start();
    (void)TakeLog();
    const std::string out_of_120 = "DGD command failed: value is out of range 1..120.\n";
    const std::string out_of_10 = "DGD command failed: value is out of range 1..10.\n";
    const struct {
        Action action;
        const char* log;
        std::string error;
    } cases[] = {
        {[] { return SetResponseTime(120); }, "response-time 120 ", ""},
        {[] { return SetResponseTime(121); }, "response-time 121 ", out_of_120},
        {[] { return SetIntervalTime(1); }, "interval-time 1", ""},
        {[] { return SetIntervalTime(0); }, "interval-time 0", out_of_120},
        {[] { return SetRetriesCount(10); }, "retries-count 10", ""},
        {[] { return SetRetriesCount(11); }, "retries-count 11", out_of_10},
        {[] { return SetSyslogLevel(4); }, "syslog-level 4", ""},
        {[] { return SetSyslogLevel(5); }, "syslog-level 5",
         "DGD command failed: value is out of range 0..4.\n"},
    };
    for (const auto& [action, log, error] : cases) {
        EXPECT_EQ(Do(error.empty(), action), (Output{"", error}));
        const auto lines = TakeLog();
        EXPECT_EQ(lines.front(), (LogLine{6, std::string("command: inet dgd configuration ") + log}));
        EXPECT_EQ(lines.size() == 2 && lines.back() == kDone, error.empty());
    }
    EXPECT_EQ(Saved(),
              "!\ndgd check-interval 1\ndgd fail-count 10\ndgd wait-timeout 120\nlog syslog debugging\n!\n");
    const std::string report = "DGD is running\nDGD autostart is on\nResponse-time = 120\nInterval-time = 1\n"
                               "Retries-count = 10\nSyslog-level = debugging (4)\nNext-hop configured = 0\n"
                               "Rules configured = 0\n";
    EXPECT_EQ(Do(true, ShowConfiguration), (Output{report, ""}));
    EXPECT_EQ(Do(true, [] { return SetSyslogLevel(-1); }), kNothing);
    EXPECT_THAT(Do(true, ShowConfiguration).out, HasSubstr("\nSyslog-level = disabled (-1)\n"));

    const std::string question = "Are you sure to reset DGD settings to default values? [y/N] ";
    EXPECT_EQ(Do(false, SetDefaults, "n\n"),
              (Output{question + "You have cancelled dgd configuration default command.\n", ""}));
    EXPECT_EQ(Do(true, SetDefaults, "y\n"), (Output{question, ""}));
    EXPECT_EQ(Saved(),
              "!\ndgd check-interval 3\ndgd fail-count 3\ndgd wait-timeout 3\nlog syslog informational\n!\n");
}

TEST_F(DgdTest, RulesFromFirstLineToLast) {
    Start();
    Configure({"ip rule p 1024", "set reject"});
    Configure({"next-hop gw", "address 10.0.0.1"}, "dgdd");
    (void)TakeLog();
    EXPECT_EQ(Do(true, [] { return AddRuleMatch("r", "gw", "down"); }), kNothing);
    EXPECT_EQ(Do(true, [] { return AddRulePolicyAction("r", 1, "p"); }), kNothing);
    EXPECT_EQ(Do(true, [] { return AddRuleLogAction("r", 10, "gw-is-down"); }), kNothing);
    EXPECT_EQ(Do(true, [] { return AddRuleMatch("r2", "gw", "up"); }), kNothing);
    EXPECT_THAT(
        TakeLog(),
        ElementsAre(LogLine{6, "command: inet dgd rule add r match next-hop gw down"}, kDone,
                    LogLine{6, "command: inet dgd rule add r action-priority 1 service route command policy "
                               "active p "},
                    kDone,
                    LogLine{6, "command: inet dgd rule add r action-priority 10 service log gw-is-down"},
                    kDone, LogLine{6, "command: inet dgd rule add r2 match next-hop gw up"}, kDone));
    const std::string r = "dgd-rule r\n match next-hop gw state down\n action 1 route policy p\n"
                          " action 10 zlog gw-is-down\n!\n";
    const std::string r2 = "dgd-rule r2\n match next-hop gw state up\n!\n";
    EXPECT_THAT(Sections(), ::testing::EndsWith("!\n" + r + r2));
    const std::string before = Saved();

    const std::string title = " Rule(DGD) Name\n       Values\n" + std::string(79, '-') + "\n";
    const std::string shown = "rule r:\n      match next-hop gw state down\n"
                              "      action priority 1 service route command policy active p\n"
                              "      action priority 10 service log command gw-is-down\n";
    EXPECT_EQ(Do(true, [] { return ShowRule("r"); }).out, title + shown + " DGD rule(s)configured: 1\n");
    EXPECT_EQ(Do(true, [] { return ShowRule(""); }).out,
              title + shown + "rule r2:\n      match next-hop gw state up\n DGD rule(s)configured: 2\n");
    EXPECT_EQ(Do(true, [] { return ShowRule("r3"); }).out, "\n DGD rule(s) r3 configured: 0\n\n");

    const std::string exists = std::string(kNotExecuted) + " This action already exists in the rule";
    ExpectRefusals({
        {[] { return AddRuleMatch("r", "gw", "down"); }, kNotExecuted},
        {[] { return AddRulePolicyAction("r", 2, "p"); }, exists},
        {[] { return AddRuleLogAction("r", 2, "gw-is-down"); }, exists},
        {[] { return AddRuleLogAction("r", 1, "other"); }, kNotExecuted},
        {[] { return AddRulePolicyAction("r", 2, "none"); },
         std::string("No such IP policy none\".\n") + kFailed},
        {[] { return DeleteRuleMatch("r", "gw", "up"); }, kNotExecuted},
        {[] { return DeleteRuleMatch("r3", "gw", "up"); }, kNotExecuted},
        {[] { return DeleteRuleAction("r", 0); }, kNotExecuted},
    });
    EXPECT_EQ(Saved(), before);

    EXPECT_EQ(Do(true, [] { return DeleteRuleAction("r", 1); }), kNothing);
    EXPECT_EQ(Do(true, [] { return DeleteRuleMatch("r", "gw", "down"); }), kNothing);
    EXPECT_THAT(Sections(), ::testing::EndsWith("!\ndgd-rule r\n action 10 zlog gw-is-down\n!\n" + r2));
    EXPECT_EQ(Do(true, [] { return DeleteRuleAction("r", 10); }), kNothing);
    EXPECT_THAT(Sections(), ::testing::EndsWith("icmp\n!\n" + r2)); // a rule without lines goes
    const std::string question = "Do you want to clear this rule? [y/N] ";
    const auto clear = [] { return ClearRule("r2"); };
    EXPECT_EQ(Do(false, clear, "n\n"), (Output{question + "You have cancelled rule r2 clear.\n", ""}));
    EXPECT_EQ(Do(true, clear, "y\n"), (Output{question, ""}));
    EXPECT_EQ(Do(false, clear, "y\n"), (Output{question, "DGD command can not be executed.\n"}));
    EXPECT_THAT(Sections(), ::testing::Not(HasSubstr("dgd-rule")));
    Configure({"dgd-rule r"}, "dgdd");
    EXPECT_EQ(Do(false, [] { return DeleteRuleAction("r", 1); }).err, "DGD can't delete empty rule.\n");
}

TEST_F(DgdTest, SendsChangesBetweenTwoLoads) {
    support::WriteFile(kDgddFile, "next-hop gw\n!\n");
    support::Record("/sbin/dgd.sh");
    Answer({});
    const std::vector<std::string> load{"/sbin/dgd.sh enabled", "/sbin/dgd.sh status",
                                        "/usr/bin/vtysh -d dgdd -c 'show logging'",
                                        "/usr/bin/vtysh -d dgdd -c 'show running-config'"};
    const std::string conf = "/usr/bin/vtysh -d dgdd -c 'configure terminal' -c ";
    const std::string end = " -c end -c 'write file'";
    const struct {
        Action action;
        std::vector<std::string> sent;
    } cases[] = {
        {[] { return SetSyslogLevel(0); }, {conf + "'log syslog critical'" + end}},
        {[] { return AddInterfaceNextHop("d", "eth1", "no-check", ""); },
         {"/usr/bin/vtysh -d dgdd -c 'show next-hop'", "/usr/bin/vtysh -d dgdd -c 'show next-hop'",
          conf + "'dyn-next-hop d' -c 'interface eth1' -c 'no check'" + end}},
        {[] { return DeleteNextHop("gw"); },
         {"/usr/bin/vtysh -d dgdd -c 'show running-config'", conf + "'no next-hop gw'" + end}},
        {[] { return AddRulePolicyAction("r", 50, "p"); },
         {"/usr/bin/vtysh -c 'show ip policy p'", conf + "'dgd-rule r' -c 'action 50 route policy p'" + end}},
    };
    for (const auto& [action, sent] : cases) {
        support::ForgetCommands();
        for (const char* answer : {"yes\n", "running\n", "yes\n", "running\n"}) {
            support::Queue("/sbin/dgd.sh", {.out = answer});
        }
        EXPECT_EQ(Do(true, action), kNothing);
        std::vector<std::string> expected = load;
        expected.insert(expected.end(), sent.begin(), sent.end());
        expected.insert(expected.end(), load.begin(), load.end());
        ExpectCommands(expected);
    }
}

TEST_F(DgdTest, RuleArgumentsThatAreNone) {
    Start();
    Answer({});
    const std::string name(64, 'a');
    ExpectRefusals({
        {[] { return AddRuleMatch("r_1", "gw", "up"); }, "wrong rule name: \"r_1\""},
        {[] { return DeleteRuleMatch("r", "gw", "u p"); }, "wrong state: \"u p\""},
        {[] { return AddRulePolicyAction("r", 1, "p\\"); }, "wrong policy name: \"p\\\""},
        {[] { return AddRuleLogAction("r", 1, "x\" -c \"no dgd-rule r"); },
         "wrong log text: \"x\" -c \"no dgd-rule r\""},
        {[&] { return ClearRule(name); }, "wrong rule name: \"" + name + "\""},
    });
    ExpectCommands({});
}

TEST_F(DgdTest, DaemonThatAnswersNothingOrFails) {
    Start();
    support::WriteFile(kDgddFile, "dgd-rule r\n match next-hop gw state up\n!\nnext-hop gw\n!\n");
    DgdConfig config;
    Answer(
        {{.out = "Syslog logging: level"},
         {.out =
              "dgd\ndgd wait-timeout\ndgd fail-count 99999999999999999999\nlog syslog\nnext-hop\ndgd-rule"}});
    EXPECT_TRUE(config.Load());
    EXPECT_EQ(config.wait_timeout, 3);
    EXPECT_EQ(config.fail_count, INT_MAX);
    EXPECT_THAT(config.names, IsEmpty());
    Answer({{.out = "Stdout logging: level errors\nSyslog logging: level errors, facility daemon\n"},
            {.out = "dyn-next-hop d\nnext-hop gw\nlog syslog odd level\n match next-hop x state up\n"}});
    EXPECT_TRUE(config.Load());
    EXPECT_EQ(config.syslog_level, -1);
    EXPECT_EQ(config.next_hop_count, 2);
    EXPECT_THAT(config.names, ElementsAre("d", "gw"));

    const support::Answer failure{.status = 1};
    const struct {
        Action action;
        int asked; // answers behind the load before the one that fails
        std::vector<LogLine> log;
    } cases[] = {
        {[] { return SetResponseTime(7); }, 0, {}},
        {[] { return AddNextHop("new", "10.0.0.1", "check", "icmp"); },
         2,
         {{3, "Failed dgd command \"show next-hop\"."}}},
        {[] { return AddRulePolicyAction("r", 1, "p"); },
         0,
         {{3, "Failed dgd command \"show ip policy p\"."}}},
        {[] { return DeleteNextHop("gw"); }, 0, {}},
    };
    for (const auto& [action, asked, log] : cases) {
        std::vector<support::Answer> answers(static_cast<std::size_t>(2 + asked));
        answers.push_back(failure);
        Answer(answers);
        (void)TakeLog();
        ExpectRefusals({{action, kFailed}});
        std::vector<LogLine> lines = TakeLog();
        lines.erase(lines.begin()); // the command
        EXPECT_EQ(lines, log);
    }
}

TEST_F(DgdTest, SettingsLock) {
    Start();
    const std::string before = Show("show running-config", "dgdd");
    const support::Daemon holder = support::HoldLock("/run/lock/settings.lock", false);
    ExpectRefusals({{[] { return SetResponseTime(7); }, kFailed}});
    EXPECT_THAT(TakeLog(), Contains(LogLine{4, "config is locked by another process, please try again"}));
    EXPECT_EQ(Show("show running-config", "dgdd"), before);
}

TEST_F(DgdTest, SectionsAreFoundByWholeWords) {
    support::WriteFile(kDgddFile, "dgd-rule rr\n match next-hop mygw state up\n action 10 zlog a\n!\n"
                                  "dgd-rule r\n match next-hop gw state up\n action 1 zlog abc\n!\n");
    const struct {
        const char *section, *word;
        bool has;
    } cases[] = {{"dgd-rule r", "gw state up", true}, {"dgd-rule rr", "gw state up", false},
                 {"dgd-rule rr", "action 1", false},  {"dgd-rule rr", "action 10", true},
                 {"next-hop gw", "", false},          {"dgd-rule r", "", true},
                 {"dgd-rule r", "zlog a", false}};
    for (const auto& [section, word, has] : cases) {
        EXPECT_EQ(ConfigSectionHas(section, word), has) << section << ": " << word;
    }
}

TEST_F(DgdTest, ValuesOfTheShell) {
    support::WriteFile(kDgddFile,
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

    EXPECT_EQ(unlink(kDgddFile), 0);
    EXPECT_EQ(Capture([] { EXPECT_THAT(value::ExistingDgdRules().list(), IsEmpty()); }).err,
              "/etc/quagga/dgdd.conf: failed to open file: No such file or directory\n");
}

TEST_F(DgdTest, PassiveNode) {
    JoinCluster(1);
    support::Record("/sbin/dgd.sh");
    const std::string disabled = "DGD management is disabled because the cluster appliance is passive.";
    ExpectRefusals({{[] { return SetMode("on"); }, disabled}, {ShowConfiguration, disabled}});
    ExpectCommands({});
}

} // namespace
} // namespace dgd
