#include "commands/dgd/commands.h"
#include "commands/dgd/dgd_config.h"
#include "commands/dgd/values.h"
#include "tests/commands/routing/routing_fixture.h"

#include <functional>
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

const LogLine kDone{6, "DGD command done."};
const Output kNothing{"", ""};
const Output kFailed{"", "DGD command failed.\n"};
const Output kNotExecuted{"", "DGD command can not be executed.\n"};

class DgdTest : public RoutingAppliance {
protected:
    static void Start() { EXPECT_EQ(support::RunProgram({"/sbin/dgd.sh", "start"}).status, 0); }

    // The stand-in's configuration as it is kept for the next start; the same as the running one.
    static std::string Saved() {
        const std::string text = support::ReadFile(kDgddFile);
        EXPECT_EQ(Show("show running-config", "dgdd"), text);
        return text;
    }

    // The part of it behind the settings.
    static std::string Sections() {
        const std::string text = Saved();
        return text.substr(text.find("!\n", 2) + 2);
    }

    static Output Do(bool expected, const std::function<bool()>& action, const std::string& answers = "") {
        return Capture([&] { EXPECT_EQ(action(), expected); }, answers);
    }
};

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
    EXPECT_EQ(Do(false, [] { return SetMode("on"); }), kFailed);
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
        std::function<bool()> action;
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

TEST_F(DgdTest, NextHopsFromAddToDelete) {
    Start();
    EXPECT_EQ(Do(true, [] { return AddNextHop("gw", "10.0.0.1", "check", "icmp"); }), kNothing);
    EXPECT_EQ(Do(true, [] { return AddNextHop("gw-2", "10.0.0.2", "8.8.8.8", "no-check", ""); }), kNothing);
    EXPECT_EQ(Do(true, [] { return AddInterfaceNextHop("dyn", "eth1", "8.8.4.4", "check", "tcp443"); }),
              kNothing);
    EXPECT_EQ(Do(true, [] { return AddInterfaceNextHop("lte", "modem", "check", "icmp"); }), kNothing);
    EXPECT_THAT(
        TakeLog(),
        ElementsAre(LogLine{6, "command: inet dgd next-hop add gw address 10.0.0.1 check icmp"}, kDone,
                    LogLine{6, "command: inet dgd next-hop add gw-2 address 10.0.0.2 test-address 8.8.8.8 "
                               "no-check "},
                    kDone,
                    LogLine{6, "command: inet dgd next-hop add dyn interface eth1 test-address 8.8.4.4 check "
                               "tcp443"},
                    kDone, LogLine{6, "command: inet dgd next-hop add lte interface modem check icmp"},
                    kDone));
    const std::string sections =
        "dyn-next-hop dyn\n interface eth1\n test-address 8.8.4.4\n check\n check-type tcp443\n!\n"
        "next-hop gw\n address 10.0.0.1\n test-address 10.0.0.1\n check\n check-type icmp\n!\n"
        "next-hop gw-2\n address 10.0.0.2\n test-address 8.8.8.8\n no check\n!\n"
        "dyn-next-hop lte\n interface modem\n check\n check-type icmp\n!\n";
    EXPECT_EQ(Sections(), sections);

    const Output changes{"", "it is prohibited to change fields for the nexthop\n"};
    const struct {
        std::function<bool()> action;
        Output output;
    } refusals[] = {
        {[] { return AddNextHop("gw", "10.0.0.1", "check", "icmp"); },
         {"", "Next-hop with this name already exists\n"}},
        {[] { return AddNextHop("gw-2", "10.0.0.2", "8.8.8.8", "no-check", ""); },
         {"", "Next-hop with this name already exists\n"}},
        {[] { return AddNextHop("gw", "10.0.0.9", "check", "icmp"); }, changes},
        {[] { return AddNextHop("gw", "10.0.0.1", "check", "tcp80"); }, changes},
        {[] { return AddNextHop("gw", "10.0.0.1", "no-check", "icmp"); }, changes},
        {[] { return AddNextHop("gw", "10.0.0.1", "9.9.9.9", "check", "icmp"); }, changes},
        {[] { return AddNextHop("dyn", "10.0.0.1", "check", "icmp"); }, changes},
        {[] { return AddInterfaceNextHop("gw", "eth2", "check", "icmp"); }, changes},
        {[] { return AddInterfaceNextHop("dyn", "eth1", "1.1.1.1", "check", "tcp443"); }, changes},
        {[] { return AddNextHop("new", "10.0.0.2", "check", "icmp"); },
         {"", "Next-hop address is already in use\nDGD command failed.\n"}},
        {[] { return AddInterfaceNextHop("dyn", "eth1", "check", "tcp443"); },
         {"", "Next-hop with the interface is already in use. Delete it firstly\n"}},
        {[] { return AddInterfaceNextHop("new", "modem", "check", "icmp"); },
         {"", "Next-hop with the interface is already in use. Delete it firstly\n"}},
        {[] { return AddNextHop("new", "10.0.0.3", "check", "udp"); }, kFailed},
        {[] { return DeleteNextHop("g"); }, kNotExecuted},
    };
    for (const auto& [action, output] : refusals) {
        EXPECT_EQ(Do(false, action), output);
    }
    // What a refused check type leaves behind in the daemon is its own.
    EXPECT_EQ(Do(true, [] { return DeleteNextHop("dyn"); }), kNothing);
    EXPECT_EQ(Do(true, [] { return AddRuleMatch("r", "gw-2", "up"); }), kNothing);
    EXPECT_EQ(
        Do(false, [] { return DeleteNextHop("gw-2"); }),
        (Output{"",
                "Can't delete this next-hop, because it is referenced by at least one dgd rule.\nDGD command "
                "failed.\n"}));
    // A name that begins the other one is free to go.
    EXPECT_EQ(Do(true, [] { return DeleteNextHop("gw"); }), kNothing);
    EXPECT_EQ(Do(true, [] { return DeleteNextHop("lte"); }), kNothing);
    EXPECT_THAT(Sections(), ::testing::Not(::testing::AnyOf(HasSubstr("next-hop gw\n"), HasSubstr("lte"))));
}

TEST_F(DgdTest, NextHopListing) {
    const std::string title =
        "Next-hop name\nMode      Type        TestIP-address             Interface (Global state)\n"
        "Gateway IP-address    Success / Failed rate      State   Last state change\n" +
        std::string(79, '-') + "\n";
    support::WriteFile(kDgddFile,
                       "next-hop gw\n address 10.0.0.1\n test-address 8.8.8.8\n check\n check-type icmp\n!\n"
                       "dyn-next-hop lte\n interface modem\n no check\n!\n"
                       "dgd-rule r\n match next-hop gw state up\n!\n");
    const std::string lte_off = "lte\nDynamic   no check    NA                         modem (NA)\n"
                                "NA                    0 / 0                      NA      never\n";
    EXPECT_EQ(Do(true, [] { return ShowNextHop(""); }).out,
              "DGD disabled.\n" + title +
                  "gw\nStatic    icmp        8.8.8.8                    \n"
                  "10.0.0.1              0 / 0                      NA      never\n" +
                  lte_off + "Next-hop(s) configured: 2\n");
    Start();
    support::WriteFile("/run/quagga/dgd-states", "gw up 12 3 2 days ago\nlte down 7 7 now\n");
    const std::string gw = "gw\nStatic    icmp        8.8.8.8                    \n"
                           "10.0.0.1              12 / 3                     Up      2 days ago\n";
    EXPECT_EQ(Do(true, [] { return ShowNextHop(""); }).out,
              title + gw +
                  "lte\nDynamic   no check    NA                         modem (Down)\n"
                  "NA                    0 / 0                      Down    now\n"
                  "Next-hop(s) configured: 2\n");
    EXPECT_EQ(Do(true, [] { return ShowNextHop("gw"); }).out, title + gw + "Next-hop(s) configured: 1\n");
    EXPECT_EQ(Do(true, [] { return ShowNextHop("g"); }).out, "\nNext-hop(s) g configured: 0 \n");
    EXPECT_THAT(TakeLog(), Contains(LogLine{6, "command: inet show dgd next-hop gw"}));

    // Several test addresses, no connection, a line of no known form, one cut off.
    const auto parsed = nexthop::ParseShown(
        {"Static next", "Dynamic next hop d", "  Next hop interface: not connected",
         "Current global state: odd", "Tested IP address: 1.1.1.1", "Current state: down",
         "Failed checks (since state change): 4", "Tested IP address:", "Check type tcp80",
         "State last changed:", "Static next hop s", "Next hop IP address: not", "Check type not checked",
         "Successful checks (since state change): 9"});
    ASSERT_EQ(parsed.size(), 2U);
    EXPECT_EQ(parsed[0]->Format(), "d\nDynamic   tcp80       1.1.1.1                    NA (NA)\n"
                                   "NA                    0 / 4                      Down    never\n"
                                   "Dynamic   tcp80       NA                         NA (NA)\n"
                                   "NA                    0 / 0                      NA      never\n");
    EXPECT_EQ(parsed[1]->Format(), "s\nStatic    not checked NA                         \n"
                                   "NA                    0 / 0                      NA      never\n");
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

    const struct {
        std::function<bool()> action;
        Output output;
    } refusals[] = {
        {[] { return AddRuleMatch("r", "gw", "down"); }, kNotExecuted},
        {[] { return AddRulePolicyAction("r", 2, "p"); },
         {"", "DGD command can not be executed. This action already exists in the rule\n"}},
        {[] { return AddRuleLogAction("r", 2, "gw-is-down"); },
         {"", "DGD command can not be executed. This action already exists in the rule\n"}},
        {[] { return AddRuleLogAction("r", 1, "other"); }, kNotExecuted},
        {[] { return AddRulePolicyAction("r", 2, "none"); },
         {"", "No such IP policy none\".\nDGD command failed.\n"}},
        {[] { return DeleteRuleMatch("r", "gw", "up"); }, kNotExecuted},
        {[] { return DeleteRuleMatch("r3", "gw", "up"); }, kNotExecuted},
        {[] { return DeleteRuleAction("r", 0); }, kNotExecuted},
        {[] { return DeleteRuleAction("r2", 1); }, kNotExecuted},
    };
    for (const auto& [action, output] : refusals) {
        EXPECT_EQ(Do(false, action), output);
    }
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

TEST_F(DgdTest, SendsTheLinesThatTheDaemonKnows) {
    support::WriteFile(kDgddFile,
                       "next-hop gw\n!\ndgd-rule r\n match next-hop gw state up\n action 5 zlog a\n!\n");
    support::Record("/sbin/dgd.sh");
    Answer({});
    const std::string conf = "/usr/bin/vtysh -d dgdd -c 'configure terminal' -c ";
    const std::string end = " -c end -c 'write file'";
    const struct {
        std::function<bool()> action;
        std::vector<std::string> sent; // between the two loads; both ask the daemon twice
    } cases[] = {
        {[] { return SetResponseTime(7); }, {conf + "'dgd wait-timeout 7'" + end}},
        {[] { return SetSyslogLevel(-5); }, {conf + "'no log syslog'" + end}},
        {[] { return SetSyslogLevel(0); }, {conf + "'log syslog critical'" + end}},
        {[] { return AddInterfaceNextHop("d", "eth1", "no-check", ""); },
         {"/usr/bin/vtysh -d dgdd -c 'show next-hop'", "/usr/bin/vtysh -d dgdd -c 'show next-hop'",
          conf + "'dyn-next-hop d' -c 'interface eth1' -c 'no check'" + end}},
        {[] { return DeleteNextHop("gw"); },
         {"/usr/bin/vtysh -d dgdd -c 'show running-config'", conf + "'no next-hop gw'" + end}},
        {[] { return AddRuleMatch("r", "gw", "down"); },
         {conf + "'dgd-rule r' -c 'match next-hop gw state down'" + end}},
        {[] { return DeleteRuleMatch("r", "gw", "up"); },
         {conf + "'dgd-rule r' -c 'no match next-hop gw'" + end}},
        {[] { return AddRulePolicyAction("r", 50, "p"); },
         {"/usr/bin/vtysh -c 'show ip policy p'", conf + "'dgd-rule r' -c 'action 50 route policy p'" + end}},
        {[] { return AddRuleLogAction("r", 50, "b"); }, {conf + "'dgd-rule r' -c 'action 50 zlog b'" + end}},
        {[] { return DeleteRuleAction("r", 5); }, {conf + "'dgd-rule r' -c 'no action 5'" + end}},
    };
    for (const auto& [action, sent] : cases) {
        support::ForgetCommands();
        std::vector<std::string> expected;
        const auto load = [&] {
            for (const char* answer : {"yes\n", "running\n"}) {
                support::Queue("/sbin/dgd.sh", {.out = answer});
            }
            for (const char* line :
                 {"/sbin/dgd.sh enabled", "/sbin/dgd.sh status", "/usr/bin/vtysh -d dgdd -c 'show logging'",
                  "/usr/bin/vtysh -d dgdd -c 'show running-config'"}) {
                expected.emplace_back(line);
            }
        };
        load();
        expected.insert(expected.end(), sent.begin(), sent.end());
        load();
        EXPECT_EQ(Do(true, action), kNothing);
        ExpectCommands(expected);
    }
}

TEST_F(DgdTest, ArgumentsThatAreNoneReachNoCommand) {
    Start();
    Answer({});
    const std::string long_name(64, 'a');
    const struct {
        std::function<bool()> action;
        std::string error;
    } cases[] = {
        {[] { return AddNextHop("a b", "10.0.0.1", "check", "icmp"); }, "next-hop name: \"a b\""},
        {[] { return AddNextHop("a", "10.0.0", "check", "icmp"); }, "address: \"10.0.0\""},
        {[] { return AddNextHop("a", "10.0.0.1", "x", "check", "icmp"); }, "test address: \"x\""},
        {[] { return AddNextHop("a", "10.0.0.1", "check;", "icmp"); }, "check word: \"check;\""},
        {[] { return AddNextHop("a", "10.0.0.1", "check", ""); }, "check type: \"\""},
        {[] { return AddInterfaceNextHop("a", "eth0|x", "check", "icmp"); }, "interface: \"eth0|x\""},
        {[] { return DeleteNextHop(""); }, "next-hop name: \"\""},
        {[] { return AddRuleMatch("r_1", "gw", "up"); }, "rule name: \"r_1\""},
        {[] { return DeleteRuleMatch("r", "gw", "u p"); }, "state: \"u p\""},
        {[] { return AddRulePolicyAction("r", 1, "p\\"); }, "policy name: \"p\\\""},
        {[] { return AddRuleLogAction("r", 1, "gateway is down"); }, "log text: \"gateway is down\""},
        {[] { return AddRuleLogAction("r", 1, "x\" -c \"no dgd-rule r"); },
         "log text: \"x\" -c \"no dgd-rule r\""},
        {[&] { return ClearRule(long_name); }, "rule name: \"" + long_name + "\""},
    };
    for (const auto& [action, error] : cases) {
        EXPECT_EQ(Do(false, action), (Output{"", "wrong " + error + "\n"}));
    }
    ExpectCommands({});
}

TEST_F(DgdTest, DaemonThatAnswersNothingOrFails) {
    Start();
    support::WriteFile(kDgddFile, "dgd-rule r\n match next-hop gw state up\n!\nnext-hop gw\n!\n");
    Answer({});
    DgdConfig config;
    EXPECT_TRUE(config.Load());
    EXPECT_EQ(config.wait_timeout + config.next_hop_count + config.syslog_level, 2);
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
        std::function<bool()> action;
        int asked; // answers behind the load before the one that fails
        std::vector<LogLine> log;
    } cases[] = {
        {[] { return SetResponseTime(7); }, 0, {}},
        {[] { return AddNextHop("new", "10.0.0.1", "check", "icmp"); },
         2,
         {{3, "Failed dgd command \"show next-hop\"."}}},
        {[] { return DeleteNextHop("gw"); }, 0, {}},
        {[] { return AddRulePolicyAction("r", 1, "p"); },
         0,
         {{3, "Failed dgd command \"show ip policy p\"."}}},
        {[] { return DeleteRuleMatch("r", "gw", "up"); }, 0, {}},
    };
    for (const auto& [action, asked, log] : cases) {
        std::vector<support::Answer> answers(static_cast<std::size_t>(2 + asked));
        answers.push_back(failure);
        Answer(answers);
        (void)TakeLog();
        EXPECT_EQ(Do(false, action), kFailed);
        std::vector<LogLine> lines = TakeLog();
        lines.erase(lines.begin()); // the command
        EXPECT_EQ(lines, log);
    }
}

TEST_F(DgdTest, SettingsLock) {
    Start();
    const std::string before = Show("show running-config", "dgdd");
    const support::Daemon holder = support::HoldLock("/run/lock/settings.lock", false);
    EXPECT_EQ(Do(false, [] { return SetResponseTime(7); }), kFailed);
    EXPECT_THAT(TakeLog(), Contains(LogLine{4, "config is locked by another process, please try again"}));
    EXPECT_EQ(Show("show running-config", "dgdd"), before);
}

TEST_F(DgdTest, EmptyNamesAreLogged) {
    DgdConfig config;
    EXPECT_FALSE(config.NextHopExists("") || config.CheckNextHopAddr("", "10.0.0.1", "check", "icmp", "") ||
                 config.CheckNextHopIface("", "eth1", "check", "icmp", "") || config.IfaceInUse(""));
    EXPECT_THAT(TakeLog(), ElementsAre(LogLine{3, "NextHopExists: next-hop name is empty"},
                                       LogLine{3, "CheckNextHopAddr: next-hop name is empty"},
                                       LogLine{3, "CheckNextHopIface: next-hop name is empty"},
                                       LogLine{3, "IfaceInUse: interface name is empty"}));
}

TEST_F(DgdTest, SectionsAreFoundByWholeWords) {
    support::WriteFile(kDgddFile, "dgd-rule rr\n match next-hop mygw state up\n action 10 zlog a\n!\n"
                                  "dgd-rule r\n match next-hop gw state up\n action 1 zlog abc\n!\n");
    const struct {
        const char *section, *word;
        bool has;
    } cases[] = {{"dgd-rule r", "gw state up", true}, {"dgd-rule rr", "gw state up", false},
                 {"dgd-rule rr", "action 1", false},  {"dgd-rule rr", "action 10", true},
                 {"dgd-rule r", "zlog ab", false},    {"dgd-rule", "gw state up", false},
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
    WriteRecord("local.conf",
                "ETH0_IP 10.0.0.1\nETH0_MASK 255.0.0.0\nETH1_IP dhcp\nETH1_MASK dhcp\nETH2_IP dhcp\n");
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
    MakePassive();
    support::Record("/sbin/dgd.sh");
    const std::function<bool()> actions[] = {
        [] { return SetMode("on"); },
        SetDefaults,
        [] { return AddNextHop("a", "10.0.0.1", "check", "icmp"); },
        [] { return ClearRule("r"); },
        [] { return ShowRule(""); },
        [] { return ShowNextHop(""); },
        ShowConfiguration,
    };
    for (const auto& action : actions) {
        EXPECT_EQ(Do(false, action, "y\n"),
                  (Output{"", "DGD management is disabled because the cluster appliance is passive.\n"}));
    }
    ExpectCommands({});
}

} // namespace
} // namespace dgd
