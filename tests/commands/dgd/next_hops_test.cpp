#include "commands/dgd/dgd_config.h"
#include "tests/commands/dgd/dgd_fixture.h"

#include <gmock/gmock.h>

namespace {

TEST_F(DgdTest, NextHopsFromAddToDelete) {
    Start();
    Type({
        "inet dgd next-hop add gw address 10.0.0.1 check icmp",
        "inet dgd next-hop add gw-2 address 10.0.0.2 test-address 8.8.8.8 no-check",
        "inet dgd next-hop add dyn interface eth1 test-address 8.8.4.4 check tcp443",
        "inet dgd next-hop add lte interface modem check icmp",
        "inet dgd next-hop add gw address 10.0.0.1 check icmp",
        "inet dgd next-hop add gw-2 address 10.0.0.2 test-address 8.8.8.8 no-check",
        "inet dgd next-hop add gw address 10.0.0.9 check icmp",
        "inet dgd next-hop add gw address 10.0.0.1 check tcp80",
        "inet dgd next-hop add gw address 10.0.0.1 no-check icmp",
        "inet dgd next-hop add gw address 10.0.0.1 test-address 9.9.9.9 check icmp",
        "inet dgd next-hop add dyn address 10.0.0.1 check icmp",
        "inet dgd next-hop add gw interface eth2 check icmp",
        "inet dgd next-hop add dyn interface eth1 test-address 1.1.1.1 check tcp443",
        "inet dgd next-hop add new address 10.0.0.2 check icmp",
        "inet dgd next-hop add dyn interface eth1 check tcp443",
        "inet dgd next-hop add new interface modem check icmp",
        "inet dgd next-hop add new address 10.0.0.3 check udp",
        "inet dgd next-hop delete name g",
        "inet dgd next-hop delete name dyn",
        "inet dgd rule add r match next-hop gw-2 up",
        "inet dgd next-hop delete name gw-2",
        "inet dgd next-hop delete name gw", // which begins the other one
        "inet dgd next-hop delete name lte",
    });
    ExpectTranscript("dgd/next_hops");
    EXPECT_EQ(support::RunProgram({kVtysh, "-d", "dgdd", "-c", "show running-config"}).out,
              support::ReadFile(kSaved));
}

TEST_F(DgdTest, NextHopListing) {
    support::WriteFile(kSaved,
                       "next-hop gw\n address 10.0.0.1\n test-address 8.8.8.8\n check\n check-type icmp\n!\n"
                       "dyn-next-hop lte\n interface modem\n no check\n!\n"
                       "dgd-rule r\n match next-hop gw state up\n!\n");
    Type({"inet show dgd next-hop"});
    Start();
    support::WriteFile("/run/quagga/dgd-states", "gw up 12 3 2 days ago\nlte down 7 7 now\n");
    Type({"inet show dgd next-hop", "inet show dgd next-hop gw", "inet show dgd next-hop g"});
    ExpectTranscript("dgd/next_hop_listing");

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

TEST_F(DgdTest, EmptyNamesAreLogged) {
    using support::LogLine;
    dgd::DgdConfig config;
    EXPECT_FALSE(config.NextHopExists("") || config.CheckNextHopAddr("", "10.0.0.1", "check", "icmp", "") ||
                 config.CheckNextHopIface("", "eth1", "check", "icmp", "") || config.IfaceInUse(""));
    EXPECT_THAT(TakeLog(), ::testing::ElementsAre(LogLine{3, "NextHopExists: next-hop name is empty"},
                                                  LogLine{3, "CheckNextHopAddr: next-hop name is empty"},
                                                  LogLine{3, "CheckNextHopIface: next-hop name is empty"},
                                                  LogLine{3, "IfaceInUse: interface name is empty"}));
}

} // namespace
