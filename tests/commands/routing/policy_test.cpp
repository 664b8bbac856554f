#include "commands/routing/policy_checks.h"
#include "commands/routing/policy_commands.h"
#include "commands/routing/policy_rules.h"
#include "commands/routing/policy_values.h"
#include "tests/commands/routing/routing_fixture.h"

#include <functional>
#include <gmock/gmock.h>

namespace routing {
namespace {

using support::Capture;
using support::ExpectCommands;
using support::LogLine;
using support::Output;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string kTitle = "Rule(Policy) Name Priority\n  Values\n" + std::string(79, '-') + "\n";

class PolicyTest : public RoutingAppliance {
protected:
    static Output Add(bool expected, RuleItem item, const std::string& value = "",
                      unsigned long priority = 1024) {
        return Do(expected, [&] { return PolicyRuleAdd(item, "p", priority, value); });
    }

    static Output Delete(bool expected, RuleItem item, const std::string& value = "",
                         unsigned long priority = 1024) {
        return Do(expected, [&] { return PolicyRuleDelete(item, "p", priority, value); });
    }
};

TEST_F(PolicyTest, EveryItemFromItsAddToItsDelete) {
    Configure({"table 5 VPN"});
    const struct {
        RuleItem item;
        const char* value;
        const char* stored;
        const char *created, *deleted; // between "Inet policy p 1024 " and " was created", " was deleted"
        const char *add_log, *delete_log;
        const char* exists; // behind the created text
    } cases[] = {
        {RuleItem::kFrom, "10.0.0.0/8", "match from 10.0.0.0/8", "match from p", "match from 10.0.0.0/8",
         "add p 1024 match address from 10.0.0.0/8", "delete p 1024 match address from 10.0.0.0/8",
         "already exist"},
        {RuleItem::kTo, "10.0.0.1", "match to 10.0.0.1", "match to p", "match to 10.0.0.1",
         "add p 1024 match address to 10.0.0.1", "delete p 1024 match address to 10.0.0.1", "already exist"},
        {RuleItem::kInboundInterface, "eth0", "match inbound-interface eth0", "match inbound-interface p",
         "match inbound-interface eth0", "add p 1024 match inbound-interface eth0",
         "delete p 1024 match inbound-interface eth0", "already exists"},
        {RuleItem::kOutboundInterface, "eth0.5", "match outbound-interface eth0.5",
         "match outbound-interface p", "match outbound-interface eth0.5",
         "add p 1024 match outbound-interface eth0.5", "delete p 1024 match outbound-interface eth0.5",
         "already exists"},
        {RuleItem::kDscp, "EF", "match tos 184", "match dscp p", "match dscp EF", "add p 1024 match dscp EF",
         "delete p 1024 match dscp EF", "already exists"},
        {RuleItem::kTableName, "vpn", "set table VPN", "set table vpn", "set table vpn",
         "add p 1024 table vpn", "delete p 1024 table vpn", "already exists"},
        {RuleItem::kTableNumber, "5", "set table VPN", "set table 5", "set table 5", "add p 1024 table 5",
         "delete p 1024 table 5", "already exists"},
        {RuleItem::kTableDefault, "", "set table MAIN", "set table default", "set table default",
         "add p 1024 table default", "inet policy rule delete p 1024 table default", "already exists"},
        {RuleItem::kBlock, "", "set blackhole", "set table block", "set table block", "add p 1024 block",
         "delete p 1024 table block", "already exists"},
        {RuleItem::kReject, "", "set reject", "set table reject", "set table reject", "add p 1024 reject",
         "delete p 1024 table reject", "already exists"},
    };
    for (const auto& test : cases) {
        const std::string rule = "Inet policy p 1024 ";
        (void)TakeLog();
        EXPECT_EQ(Add(true, test.item, test.value).out, rule + test.created + " was created\n");
        EXPECT_THAT(TakeLog(),
                    ElementsAre(LogLine{6, std::string("command: inet policy rule ") + test.add_log}));
        EXPECT_EQ(Show("show ip policy p"), std::string("ip rule p 1024\n ") + test.stored + "\n!\n");

        EXPECT_EQ(Add(false, test.item, test.value),
                  (Output{"", "To change, you must delete the old value\n"}));
        // The daemon has lost what its file still holds.
        Configure({"ip rule p 1025", "set reject", "no ip rule p 1024"});
        support::WriteFile("/etc/quagga/zebra.conf",
                           std::string("ip rule p 1024\n ") + test.stored + "\n!\n");
        EXPECT_EQ(Add(false, test.item, test.value).err, rule + test.created + " " + test.exists + "\n");
        Configure({"no ip rule p 1025", "ip rule p 1024", test.stored});

        (void)TakeLog();
        EXPECT_EQ(Delete(true, test.item, test.value), (Output{rule + test.deleted + " was deleted\n", ""}));
        const std::string log = test.delete_log;
        EXPECT_THAT(
            TakeLog(),
            ElementsAre(LogLine{6, (log[0] == 'i' ? "command: inet " : "command: inet policy rule ") + log}));
        EXPECT_THAT(Configured("ip rule"), "ip rule default 32766\n"); // the rule went with its only item
        EXPECT_EQ(Delete(false, test.item, test.value),
                  (Output{"", rule + test.deleted + " does not exist\n"}));
    }
}

TEST_F(PolicyTest, RulesTakeOneActionAndTablesThatExist) {
    Configure({"table 5 VPN", "ip route table 7 10.0.0.0/8 1.1.1.1"});
    EXPECT_EQ(Add(true, RuleItem::kTableName, "VPN").err, "");
    const std::string before = Show("show running-config");
    const struct {
        RuleItem item;
        const char* value;
        unsigned long priority;
        const char* error;
    } cases[] = {
        {RuleItem::kBlock, "", 1024, "To change, you must delete the old value"},
        {RuleItem::kTableName, "VP", 1025, "failed to create rule. Table doesn't exist."},
        {RuleItem::kTableNumber, "6", 1025, "failed to create rule: table doesn't exists"},
        {RuleItem::kTableNumber, "7", 1025, "failed to get table name"},
        {RuleItem::kFrom, "10.0.0.0/33", 1025, "wrong address: \"10.0.0.0/33\""},
        {RuleItem::kFrom, "", 1025, "wrong address: \"\""},
        {RuleItem::kInboundInterface, "eth0;reboot", 1025, "wrong interface: \"eth0;reboot\""},
        {RuleItem::kOutboundInterface, "..", 1025, "wrong interface: \"..\""},
        {RuleItem::kOutboundInterface, "interface-of-16c", 1025, "wrong interface: \"interface-of-16c\""},
        {RuleItem::kDscp, "ef", 1025, "wrong DSCP value: \"ef\""},
        {RuleItem::kTableName, "a$(b)", 1025, "wrong table name: \"a$(b)\""},
    };
    for (const auto& [item, value, priority, error] : cases) {
        EXPECT_EQ(Add(false, item, value, priority), (Output{"", std::string(error) + "\n"}));
    }
    EXPECT_EQ(Do(false, [] { return PolicyRuleAdd(RuleItem::kBlock, "p\" -c \"x", 1024, ""); }).err,
              "wrong policy name: \"p\" -c \"x\"\n");
    EXPECT_EQ(Show("show running-config"), before);

    // Other priorities, also one that begins with this one's digits, are other rules.
    EXPECT_EQ(Add(true, RuleItem::kBlock, "", 1026).err, "");
    EXPECT_FALSE(IsRuleSlotFree("p", 1024, "set"));
    EXPECT_TRUE(IsRuleSlotFree("p", 102, "set"));
    EXPECT_TRUE(IsRuleSlotFree("p", 1024, "from"));
}

TEST_F(PolicyTest, DaemonsRefusalsAndWhatIsSent) {
    const std::string prefix = "/usr/bin/vtysh -d zebra -c 'configure terminal' -c ";
    const std::string suffix = " -c exit -c 'write file'";
    const std::string show = "/usr/bin/vtysh -d zebra -c 'show ip policy p'";
    support::WriteFile("/etc/quagga/zebra.conf",
                       "ip rule p 1024\n match from 10.0.0.1\n match outbound-interface a\n"
                       " set table VPN\n!\n");
    Answer({{}, {.status = 1}, {}, {.status = 1}});
    EXPECT_EQ(Add(false, RuleItem::kBlock, "", 1025).err, "failed to create policy rule\n");
    EXPECT_EQ(Add(false, RuleItem::kTableNumber, "5", 1025).err,
              "failed to create rule: table doesn't exists\n");
    ExpectCommands({show, prefix + "'ip rule p 1025' -c 'set blackhole'" + suffix, show,
                    "/usr/bin/vtysh -c 'show tables static'"});
    support::ForgetCommands();
    const support::Answer tables{.out = "Table VPN (ID 5):\n"};
    Answer({{.out = "ip rule p 1026\n set reject\n"},
            tables,
            tables,
            {.status = 1},
            {.status = 1},
            {.status = 1}});
    EXPECT_EQ(Add(false, RuleItem::kTableNumber, "5", 1025).err, "Inet policy p 1025 set table 5 FAILED\n");
    EXPECT_EQ(Delete(false, RuleItem::kFrom, "10.0.0.1").err, "failed to delete policy rule\n");
    EXPECT_EQ(Delete(false, RuleItem::kOutboundInterface, "a").err, "failed to delete policy rule.\n");
    ExpectCommands({show, "/usr/bin/vtysh -c 'show tables static'",
                    "/usr/bin/vtysh -d zebra -c 'show tables static'",
                    prefix + "'ip rule p 1025' -c 'set table VPN'" + suffix,
                    prefix + "'ip rule p 1024' -c 'no match from'" + suffix,
                    prefix + "'ip rule p 1024' -c 'no match outbound-interface'" + suffix});
    // A table's name comes from the daemon, and would go into a shell line.
    support::ForgetCommands();
    Answer({{}, {.out = "(ID 5)"}, {.out = "Table `reboot` (ID 5):\n"}});
    EXPECT_EQ(Add(false, RuleItem::kTableNumber, "5", 1025).err, "failed to get table name\n");
    EXPECT_EQ(support::Commands().size(), 3U);
    // The beginning of an address is not the address.
    EXPECT_EQ(Delete(false, RuleItem::kFrom, "10.0.0.0").err,
              "Inet policy p 1024 match from 10.0.0.0 does not exist\n");
    EXPECT_FALSE(RuleHasItem("ip rule p 1024", " match from 10.0.0"));
    EXPECT_EQ(CountRuleItems("p", 1024), 3);
    EXPECT_EQ(CountRuleItems("p", 102), 0);
}

TEST_F(PolicyTest, SettingsLockIsHeldWhileSending) {
    const support::Daemon holder = support::HoldLock("/run/lock/settings.lock", false);
    const std::string before = Show("show running-config");
    EXPECT_EQ(Add(false, RuleItem::kBlock), (Output{"", ""}));
    EXPECT_THAT(TakeLog(), Contains(LogLine{4, "config is locked by another process, please try again"}));
    EXPECT_EQ(Show("show running-config"), before);
}

TEST_F(PolicyTest, PolicyThatDgdNeedsKeepsItsLastItem) {
    Configure({"ip rule p 1024", "match from 10.0.0.1", "set reject"});
    support::WriteFile("/etc/quagga/dgdd.conf",
                       "dgd-rule r\n action 1 route policy p\n action 2 route policy pq\n!\n");
    EXPECT_FALSE(IsPolicyUnreferenced("p"));
    EXPECT_FALSE(IsPolicyUnreferenced("pq"));
    EXPECT_TRUE(IsPolicyUnreferenced("q"));
    EXPECT_EQ(Delete(true, RuleItem::kFrom, "10.0.0.1").err, "");
    const std::string before = Show("show running-config");
    const std::string refusal =
        "Can't delete this policy, because it is referenced by at least one dgd rule.\n";
    EXPECT_EQ(Delete(false, RuleItem::kReject), (Output{"", refusal}));
    EXPECT_EQ(Do(
                  false, [] { return PolicyRuleClear("p"); }, "y\n"),
              (Output{"", refusal}));
    EXPECT_EQ(Do(
                  false, [] { return PolicyRuleClear("p", 1024); }, "y\n"),
              (Output{"", refusal}));
    EXPECT_EQ(Show("show running-config"), before);
}

TEST_F(PolicyTest, ShowsRulesAsTheCommandsSpellThem) {
    Configure({"table 5 VPN", "ip rule p 1024", "match from 10.0.0.0/8", "match to 10.0.0.1",
               "match inbound-interface eth0", "match outbound-interface eth1", "match tos 184",
               "set table VPN", "exit", "ip rule p 1025", "match tos 5", "set blackhole", "exit",
               "ip rule q 1024", "set reject", "exit", "ip policy q"});
    const std::string p = "rule p 1024\n"
                          "      match address from 10.0.0.0/8\n"
                          "      match address to 10.0.0.1\n"
                          "      match inbound-interface eth0\n"
                          "      match outbound-interface eth1\n"
                          "      match dscp 0xB8 (EF)\n"
                          "      table VPN (5)\n";
    const std::string p2 = "rule p 1025\n      match dscp 0x5\n      block\n";
    const std::string q = "rule q 1024\n      reject\n      Policy q is active.\n";
    const auto count = [](int number) {
        return "\nPolicy rule(s) configured: " + std::to_string(number) + "\n";
    };
    EXPECT_EQ(Do(true, ShowAllPolicyRules),
              (Output{kTitle + "rule default\n      table 254 (default)\n" + p + p2 + q + count(4), ""}));
    EXPECT_EQ(Do(true, [] { return ShowPolicyRule("p"); }).out, kTitle + p + p2 + count(2));
    EXPECT_EQ(Do(true, [] { return ShowPolicyRule("p", 1025); }).out, kTitle + p2 + count(1));
    EXPECT_EQ(Do(false, [] { return ShowPolicyRule("p", 102); }).err, "Policy rule(s) not found\n");
    EXPECT_EQ(Do(true, ShowActivePolicy).out, "Current IP policy: q\n");

    Answer({{}, {.status = 1}, {}, {.out = "Table VPNS (ID 6):\n"}, {.status = 1}, {}});
    Output output = Do(true, [] { return ShowPolicyRule("p", 1024); });
    EXPECT_EQ(output.err, "failed to get table number\n");
    EXPECT_THAT(output.out, HasSubstr("      table VPN\n"));
    EXPECT_EQ(Do(true, [] { return ShowPolicyRule("p", 1024); }).err, "failed to find table with name VPN\n");
    EXPECT_EQ(Do(false, [] { return ShowPolicyRule("p"); }).err, "failed to write zebra.conf.\n");
    EXPECT_EQ(Do(false, ShowActivePolicy).err, "failed to show policy rule active.\n");
    EXPECT_EQ(unlink("/etc/quagga/zebra.conf"), 0);
    EXPECT_EQ(Do(false, ShowAllPolicyRules).err,
              "/etc/quagga/zebra.conf: failed to open file: No such file or directory\n");
}

TEST_F(PolicyTest, ActivateAndClear) {
    Configure({"ip rule p 1024", "set reject", "exit", "ip rule p 1025", "set reject"});
    EXPECT_EQ(Do(true, [] { return PolicyActivate("p"); }).out, "Inet policy active was set to p\n");
    EXPECT_EQ(Configured("ip policy"), "ip policy p\n");
    EXPECT_EQ(Do(false, [] { return PolicyActivate("q"); }).err, "Inet policy q does not exist\n");
    EXPECT_EQ(Do(true, PolicyActivateDefault).out, "Inet policy active was set to default\n");
    EXPECT_EQ(Configured("ip policy"), "ip policy default\n");
    EXPECT_THAT(TakeLog(), ElementsAre(LogLine{6, "command: inet policy active p"},
                                       LogLine{6, "command: inet policy active q"},
                                       LogLine{6, "command: inet policy active default"}));

    const std::string listing = kTitle + "rule p 1025\n      reject\n\nPolicy rule(s) configured: 1\n";
    const std::string question = "Delete all policy rules? [y/N] ";
    const auto clear_one = [] { return PolicyRuleClear("p", 1025); };
    EXPECT_EQ(Do(false, clear_one, "n\n"), (Output{listing + question + "Command canceled by user\n", ""}));
    EXPECT_EQ(Do(true, clear_one, "y\n"),
              (Output{listing + question + "Inet policy p 1025 was deleted\n", ""}));
    EXPECT_EQ(Do(false, clear_one, "y\n"), (Output{"", "Policy rule(s) not found\n"}));
    EXPECT_EQ(Configured("ip rule p"), "ip rule p 1024\n");
    EXPECT_THAT(Do(
                    true, [] { return PolicyRuleClear("p"); }, "y\n")
                    .out,
                HasSubstr("Inet policy p was deleted\n"));
    EXPECT_EQ(Configured("ip rule p"), "");
    EXPECT_THAT(TakeLog(), ElementsAre(LogLine{6, "command: inet policy rule clear p 1025"},
                                       LogLine{6, "command: inet policy rule clear p 1025"},
                                       LogLine{6, "command: inet policy rule clear p 1025"},
                                       LogLine{6, "command: inet policy rule clear p"}));

    support::WriteFile("/etc/quagga/zebra.conf", "ip rule p 1024\n set reject\n!\n");
    const auto clear_first = [] { return PolicyRuleClear("p", 1024); };
    Answer({{}, {.status = 1}, {}, {.status = 127}, {.status = 1}});
    EXPECT_EQ(Do(false, clear_first, "y\n").err, "Inet policy p does not exist\n");
    EXPECT_EQ(Do(false, clear_first, "y\n").err, "failed to clear policy rule\n");
    EXPECT_EQ(Do(false, PolicyActivateDefault).err, "failed to set policy active to default\n");
    support::Record("/sbin/policy_routing");
    support::Queue("/sbin/policy_routing", {.status = 1});
    EXPECT_EQ(Do(
                  false, [] { return PolicyRuleClear("p"); }, "y\n")
                  .err,
              "Inet policy p does not exist\n");
}

TEST_F(PolicyTest, EmptyRuleThatStays) {
    Configure({"ip rule p 1024", "set reject"});
    support::Record("/sbin/policy_routing");
    support::Queue("/sbin/policy_routing", {.status = 1});
    EXPECT_EQ(Delete(true, RuleItem::kReject), (Output{"Inet policy p 1024 set table reject was deleted\n",
                                                       "failed to delete inet policy p.\n"}));
    ExpectCommands({"/sbin/policy_routing rule_clear_name_number p 1024"});
}

TEST_F(PolicyTest, ValuesOfTheShell) {
    Configure({"table 5 VPN", "table 7 LAN", "ip route table 9 10.0.0.0/8 1.1.1.1", "ip rule q 1024",
               "set reject", "exit", "ip rule p 1024", "set reject", "exit", "ip rule p 1025"});
    EXPECT_THAT(value::ExistingRules().list(), ElementsAre("p", "q"));
    EXPECT_THAT(value::ExistingTablesNumber().list(), ElementsAre("5", "7"));
    EXPECT_THAT(value::ExistingTablesName().list(), ElementsAre("VPN", "LAN"));
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
    Answer({});
    const std::function<bool()> actions[] = {
        [] { return PolicyRuleAdd(RuleItem::kBlock, "p", 1024, ""); },
        [] { return PolicyRuleDelete(RuleItem::kBlock, "p", 1024, ""); },
        [] { return PolicyRuleClear("p"); },
        [] { return PolicyRuleClear("p", 1024); },
        [] { return PolicyActivate("p"); },
        PolicyActivateDefault,
        ShowActivePolicy,
        [] { return ShowPolicyRule("p"); },
        [] { return ShowPolicyRule("p", 1024); },
        ShowAllPolicyRules,
    };
    for (const auto& action : actions) {
        EXPECT_EQ(
            Do(false, action),
            (Output{"", "VPN policy management is disabled because the cluster appliance is passive.\n"}));
    }
    const ShellWords sentence{"IP routing is disabled because the cluster appliance is passive."};
    EXPECT_EQ(value::ExistingRules().list(), sentence);
    EXPECT_EQ(value::ExistingTablesName().list(), sentence);
    EXPECT_EQ(value::DscpValue().list(), sentence);
    ExpectCommands({});
}

} // namespace
} // namespace routing
