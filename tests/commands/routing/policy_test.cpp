#include "commands/routing/known_values.h"
#include "commands/routing/policy_checks.h"
#include "commands/routing/policy_commands.h"
#include "commands/routing/policy_rules.h"
#include "commands/routing/policy_values.h"
#include "commands/routing/route_listing.h"
#include "commands/routing/route_store.h"
#include "tests/commands/routing/routing_fixture.h"

#include <future>
#include <gmock/gmock.h>

namespace routing {
namespace {

using support::Capture;
using support::LogLine;
using support::Output;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kZebraFile = "/etc/quagga/zebra.conf";
const std::string kRunning = "/run/quagga/zebra.running";

class PolicyTest : public RoutingAppliance {
protected:
    PolicyTest() {
        WatchDaemon("zebra");
        WriteRecord("ETH0_IP 192.168.1.1\nETH0_MASK 255.255.255.0\nETH0_BROADCAST 192.168.1.255\n");
    }
};

TEST_F(PolicyTest, EveryItemFromItsAddToItsDelete) {
    Configure({"table 5 VPN"});
    const std::string add = "inet policy rule add p 1024 ", remove = "inet policy rule delete p 1024 ";
    for (const std::string item :
         {"match address from 10.0.0.0/8", "match address to 10.0.0.1", "match inbound-interface eth9",
          "match inbound-interface eth0", "match outbound-interface eth0.5", "match dscp EF", "table vpn",
          "table 5", "table default", "block", "reject"}) {
        Type({add + item, add + item});
        // The daemon has lost what its file still holds.
        const std::string running = support::ReadFile(kRunning), saved = support::ReadFile(kZebraFile);
        Configure({"no ip rule p 1024"});
        support::WriteFile(kZebraFile, saved);
        Type({add + item});
        support::WriteFile(kRunning, running);
        const std::string typed = (item == "block" || item == "reject" ? "table " : "") + item;
        Type({remove + typed, remove + typed});
    }
    ExpectTranscript("policy/items");
}

TEST_F(PolicyTest, RulesTakeOneActionAndTablesThatExist) {
    Configure({"table 5 VPN", "ip route table 7 10.0.0.0/8 1.1.1.1", "ip rule p 1024", "match from 10.0.0.1",
               "exit", "ip rule p 1025", "set table VPN"});
    Type({"inet policy rule add p 1025 block", "inet policy rule add p 1026 table VP",
          "inet policy rule add p 1026 table 6", "inet policy rule add p 1026 table 7",
          "inet policy rule add p 1026 match address from 10.0.0.0/33",
          "inet policy rule add p 1026 match inbound-interface 'eth0;reboot'",
          "inet policy rule add p 1026 match outbound-interface ..",
          "inet policy rule add p 1026 match outbound-interface interface-of-16c",
          "inet policy rule add p 1026 match dscp ef", "inet policy rule add p 1026 table 'a$(b)'",
          "inet policy rule add 'p\" -c \"x' 1024 block",
          "inet policy rule add p 1024 block", // the action of 1025 is another rule's
          "inet policy rule add p 1026 reject",
          "inet policy rule delete p 1024 match address from 10.0.0.0"}); // begins the address
    EXPECT_FALSE(IsRuleSlotFree("p", 1024, "set"));
    EXPECT_TRUE(IsRuleSlotFree("p", 102, "set"));
    EXPECT_FALSE(RuleHasItem("ip rule p 1024", " match from 10.0.0"));
    EXPECT_EQ(CountRuleItems("p", 1024), 2);
    EXPECT_EQ(CountRuleItems("p", 102), 0);
    ExpectTranscript("policy/rules");
}

// In the order of their calls, each program fails once.
TEST_F(PolicyTest, DaemonThatRefuses) {
    const std::string tables = "Table MAIN (ID 254):\nTable VPN (ID 5):\n";
    support::WriteFile(kZebraFile, "ip rule p 1024\n match from 10.0.0.1\n match outbound-interface a\n"
                                   " set table VPN\n!\n");
    AnswerEach({"", ""});
    Type({"! inet policy rule add p 1025 block"});
    AnswerEach({"ip rule p 1026\n set reject\n", tables, tables, ""});
    Type({"! inet policy rule add p 1025 table 5"});
    AnswerEach({"", "(ID 5)", "Table `reboot` (ID 5):\n"});
    Type({"inet policy rule add p 1025 table 5"}); // a name that would go into a shell line
    AnswerEach({});
    Type({"! inet policy rule delete p 1024 match address from 10.0.0.1",
          "! inet policy rule delete p 1024 match outbound-interface a", "! inet policy active p",
          "! inet policy active default"});
    AnswerEach({"", tables, ""});
    Type({"! inet policy rule clear p 1024 < y"});
    answers_[kVtysh] = {"Current IP policy: p\n"};
    Type({"! inet show policy rule active"});
    support::WriteFile(kZebraFile, "ip rule p 1024\n set reject\n!\n");
    support::Record("/sbin/policy_routing");
    Type({"! inet policy rule clear p < y"}); // a rule without a table asks for none
    support::Queue(kVtysh, {});
    support::Queue(kVtysh, {.status = 127});
    EXPECT_EQ(Capture([] { EXPECT_FALSE(PolicyRuleClear("p", 1024)); }, "y\n").err,
              "failed to clear policy rule\n");
    ExpectTranscript("policy/daemon");
}

TEST_F(PolicyTest, EmptyRuleThatStays) {
    Configure({"ip rule p 1024", "set reject"});
    support::Record("/sbin/policy_routing");
    support::Queue("/sbin/policy_routing", {.status = 1});
    Type({"inet policy rule delete p 1024 table reject"});
    ExpectTranscript("policy/empty_rule");
}

// Each waits for its ten seconds, all at once.
TEST_F(PolicyTest, SettingsLockIsTakenByEachChange) {
    Configure({"ip rule p 1024", "set reject", "exit", "ip rule p 1025", "set reject", "exit",
               "ip route 10.0.0.0/8 1.1.1.1"});
    const std::string before = support::ReadFile(kRunning);
    (void)TakeLog();
    const support::Daemon holder = support::HoldLock("/run/lock/settings.lock", false);
    RouteStore store;
    const StaticRoute route = store.All().begin()->second;
    const std::vector<std::function<bool()>> changes{
        [] { return PolicyRuleAdd(RuleItem::kBlock, "p", 1026, ""); },
        [] { return PolicyRuleDelete(RuleItem::kReject, "p", 1024, ""); },
        [] { return PolicyRuleClear("p", 1025); },
        [] { return PolicyActivate("p"); },
        PolicyActivateDefault,
        [&] { return store.DeleteTableRoute("10.0.0.0", route, "254"); },
        [&] { return !FormatRoutes(store.All(), "254").empty(); },
    };
    (void)Capture(
        [&] {
            std::vector<std::future<bool>> results;
            for (const auto& change : changes)
                results.push_back(std::async(std::launch::async, change));
            for (auto& result : results)
                EXPECT_FALSE(result.get());
        },
        "y\n");
    const LogLine warning{4, "config is locked by another process, please try again"};
    std::vector<LogLine> warnings = TakeLog();
    std::erase_if(warnings, [](const LogLine& line) { return line.level != 4; });
    EXPECT_EQ(warnings.size(), changes.size());
    EXPECT_THAT(warnings, Each(warning));
    EXPECT_EQ(support::ReadFile(kRunning), before);
}

TEST_F(PolicyTest, PolicyThatDgdNeedsKeepsItsLastItem) {
    Configure({"ip rule p 1024", "match from 10.0.0.1", "set reject"});
    Type({"inet policy rule delete p 1024 match address from 10.0.0.1"});
    Configure({"ip rule p 1024", "match from 10.0.0.1"});
    support::WriteFile("/etc/quagga/dgdd.conf",
                       "dgd-rule r\n action 1 route policy p\n action 2 route policy pq\n!\n");
    EXPECT_FALSE(IsPolicyUnreferenced("pq"));
    EXPECT_TRUE(IsPolicyUnreferenced("q"));
    Type({"inet policy rule delete p 1024 match address from 10.0.0.1",
          "inet policy rule delete p 1024 table reject",
          "inet policy rule delete p 1024 match address from 10.0.0.1", // the last one's answer comes first
          "inet policy rule clear p < y", "inet policy rule clear p 1024 < y"});
    ExpectTranscript("policy/dgd");
    ASSERT_EQ(unlink("/etc/quagga/dgdd.conf"), 0);
    EXPECT_EQ(Capture([] { EXPECT_TRUE(IsPolicyUnreferenced("p")); }), (Output{"", ""}));
}

TEST_F(PolicyTest, ShowsRulesAsTheCommandsSpellThem) {
    Configure({"table 5 VPN",
               "ip rule p 1024",
               "match from 10.0.0.0/8",
               "match to 10.0.0.1",
               "match inbound-interface eth0",
               "match outbound-interface eth1",
               "match tos 184",
               "set table VPN",
               "exit",
               "ip rule p 1025",
               "match tos 5",
               "set blackhole",
               "exit",
               "ip rule p 1026",
               "set table VPN",
               "exit",
               "ip rule q 1024",
               "set reject",
               "exit",
               "ip policy q"});
    Type({"inet show policy rule all", "inet show policy rule p", "inet show policy rule p 1025",
          "inet show policy rule p 102", "inet show policy rule active"});
    PlayOnFullDisk("inet show policy rule all", ShowAllPolicyRules);
    const std::string saved = support::ReadFile(kZebraFile);
    AnswerEach({"", "Table VPNS (ID 6):\n"});
    support::WriteFile(kZebraFile, saved);
    Type({"! inet show policy rule p 1024", "inet show policy rule p", "inet show policy rule q"});
    EXPECT_EQ(unlink(kZebraFile.c_str()), 0);
    Type({"inet show policy rule all"});
    ExpectTranscript("policy/show");
}

TEST_F(PolicyTest, ActivateAndClear) {
    Configure({"ip rule p 1024", "set reject", "exit", "ip rule p 1025", "set reject"});
    Type({"inet policy active p", "inet policy active q", "inet policy active default",
          "inet policy rule clear p 1025 < n", "inet policy rule clear p 1025 < y",
          "inet policy rule clear p 1025 < y", "inet policy rule clear p < y"});
    ExpectTranscript("policy/active");
}

TEST_F(PolicyTest, ValuesOfTheShell) {
    Configure({"table 5 VPN", "table 7 LAN", "ip route table 9 10.0.0.0/8 1.1.1.1",
               "ip route 11.0.0.0/8 1.1.1.1", "ip rule q 1024", "set reject", "exit", "ip rule p 1024",
               "set reject", "exit", "ip rule p 1025"});
    EXPECT_THAT(value::ExistingRules().list(), ElementsAre("p", "q"));
    EXPECT_THAT(value::ExistingTablesNumber().list(), ElementsAre("5", "7"));
    EXPECT_THAT(value::ExistingTablesName().list(), ElementsAre("VPN", "LAN"));
    EXPECT_THAT(PolicyPriorities("p"), ElementsAre("1024", "1025"));
    EXPECT_THAT(PolicyPriorities(""), ElementsAre("1024", "1025", "32766"));
    EXPECT_THAT(RouteDestinations(), ElementsAre("10.0.0.0", "11.0.0.0"));
    EXPECT_THAT(RouteNextHops(), ElementsAre("1.1.1.1"));
    const ShellWords dscp = value::DscpValue().list();
    EXPECT_EQ(dscp.size(), 42U);
    EXPECT_THAT(dscp, ::testing::IsSupersetOf({"0x0 (default)", "default", "0xB8 (EF)", "EF", "0xA0 (CS5)"}));

    std::string parsed;
    for (const char* word : {"1024", "2048", "1500"}) {
        EXPECT_TRUE(value::PolicyPriority().parse(word, parsed) && parsed == word) << word;
    }
    for (const char* word :
         {"1023", "2049", "01024", "", "1024 ", "+1024", "0x400", "99999999999999999999"}) {
        EXPECT_FALSE(value::PolicyPriority().parse(word, parsed)) << word;
    }
    EXPECT_EQ(value::PolicyPriority().sample(), "1024..2048");

    // Through the shell's tree: the word joins the arguments of the action behind it.
    Node root;
    TreeNode& stage = root.add(std::make_unique<detail::in_node<value::DscpValue, void>>());
    ShellArguments taken;
    stage.set_action([&](const ShellArguments& arguments) {
        taken = arguments;
        return true;
    });
    ShellArguments arguments;
    EXPECT_TRUE(root.parse_tokens({"EF"}, 0, arguments));
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(boost::any_cast<std::string>(taken[0]), "EF");
    EXPECT_EQ(stage.completion(), dscp);
    EXPECT_EQ(stage.sample_inputs(), dscp);
    EXPECT_EQ(Do(false, [&] { return root.parse_tokens({"ef"}, 0, arguments); }).err,
              "unknown or ambiguous: ef\n");
    EXPECT_EQ(Do(false, [&] { return root.parse_tokens({}, 0, arguments); }).err, "incomplete command\n");

    support::WriteFile("/run/quagga/zebra.down", "");
    EXPECT_EQ(unlink("/etc/quagga/zebra.conf"), 0);
    const Output output = Capture([] {
        EXPECT_THAT(PolicyPriorities("p"), IsEmpty());
        EXPECT_THAT(RouteDestinations(), IsEmpty());
        EXPECT_THAT(value::ExistingRules().list(), IsEmpty());
        EXPECT_THAT(value::ExistingTablesNumber().list(), IsEmpty());
        EXPECT_THAT(value::ExistingTablesName().list(), IsEmpty());
    });
    EXPECT_EQ(output.err,
              "/etc/quagga/zebra.conf: failed to open file: No such file or directory\n"
              "Exiting: failed to connect to any daemons.\nfailed to find existing table numbers\n"
              "Exiting: failed to connect to any daemons.\nfailed to find existing table names.\n");
}

TEST_F(PolicyTest, PassiveNode) {
    JoinCluster(1);
    AnswerEach({});
    Type({"inet policy rule add p 1024 block", "inet policy rule delete p 1024 table block",
          "inet policy rule clear p", "inet policy rule clear p 1024", "inet policy active p",
          "inet policy active default", "inet show policy rule active", "inet show policy rule p",
          "inet show policy rule p 1024", "inet show policy rule all"});
    ExpectTranscript("policy/passive");
    const ShellWords sentence{"IP routing is disabled because the cluster appliance is passive."};
    EXPECT_EQ(value::ExistingRules().list(), sentence);
    EXPECT_EQ(value::ExistingTablesName().list(), sentence);
    EXPECT_EQ(value::DscpValue().list(), sentence);
}

} // namespace
} // namespace routing
