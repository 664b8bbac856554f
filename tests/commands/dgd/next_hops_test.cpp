#include "commands/dgd/commands.h"
#include "tests/commands/dgd/dgd_fixture.h"

#include <gmock/gmock.h>

namespace dgd {
namespace {

using support::ExpectCommands;
using support::LogLine;
using support::Output;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

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

    const std::string changes = "it is prohibited to change fields for the nexthop";
    const std::string exists = "Next-hop with this name already exists";
    const std::string in_use = "Next-hop with the interface is already in use. Delete it firstly";
    ExpectRefusals({
        {[] { return AddNextHop("gw", "10.0.0.1", "check", "icmp"); }, exists},
        {[] { return AddNextHop("gw-2", "10.0.0.2", "8.8.8.8", "no-check", ""); }, exists},
        {[] { return AddNextHop("gw", "10.0.0.9", "check", "icmp"); }, changes},
        {[] { return AddNextHop("gw", "10.0.0.1", "check", "tcp80"); }, changes},
        {[] { return AddNextHop("gw", "10.0.0.1", "no-check", "icmp"); }, changes},
        {[] { return AddNextHop("gw", "10.0.0.1", "9.9.9.9", "check", "icmp"); }, changes},
        {[] { return AddNextHop("dyn", "10.0.0.1", "check", "icmp"); }, changes},
        {[] { return AddInterfaceNextHop("gw", "eth2", "check", "icmp"); }, changes},
        {[] { return AddInterfaceNextHop("dyn", "eth1", "1.1.1.1", "check", "tcp443"); }, changes},
        {[] { return AddNextHop("new", "10.0.0.2", "check", "icmp"); },
         std::string("Next-hop address is already in use\n") + kFailed},
        {[] { return AddInterfaceNextHop("dyn", "eth1", "check", "tcp443"); }, in_use},
        {[] { return AddInterfaceNextHop("new", "modem", "check", "icmp"); }, in_use},
        {[] { return AddNextHop("new", "10.0.0.3", "check", "udp"); }, kFailed},
        {[] { return DeleteNextHop("g"); }, kNotExecuted},
    });
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
                       "dgd check-interval 120\n!\n" // no finding of the daemon's own meanwhile
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

TEST_F(DgdTest, NextHopArgumentsThatAreNone) {
    Start();
    Answer({});
    ExpectRefusals({
        {[] { return AddNextHop("a b", "10.0.0.1", "check", "icmp"); }, "wrong next-hop name: \"a b\""},
        {[] { return AddNextHop("a", "10.0.0", "check", "icmp"); }, "wrong address: \"10.0.0\""},
        {[] { return AddNextHop("a", "10.0.0.1", "x", "check", "icmp"); }, "wrong test address: \"x\""},
        {[] { return AddNextHop("a", "10.0.0.1", "check;", "icmp"); }, "wrong check word: \"check;\""},
        {[] { return AddNextHop("a", "10.0.0.1", "check", ""); }, "wrong check type: \"\""},
        {[] { return AddInterfaceNextHop("a", "eth0|x", "check", "icmp"); }, "wrong interface: \"eth0|x\""},
        {[] { return DeleteNextHop(""); }, "wrong next-hop name: \"\""},
    });
    ExpectCommands({});
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

} // namespace
} // namespace dgd
