#include "commands/routing/route_delete.h"
#include "commands/routing/route_show.h"
#include "tests/commands/routing/routing_fixture.h"

#include <unistd.h>

namespace routing {
namespace {

class RouteCommandsTest : public RoutingAppliance {
protected:
    RouteCommandsTest() { WatchDaemon("zebra"); }
};

const std::string kMain = "Table MAIN (ID 254):\n";
const std::string kVpn = "Table VPN (ID 5):\n";

TEST_F(RouteCommandsTest, RoutesOfTheMainTable) {
    Type({"inet route add 10.1.2.3 netmask 255.0.0.0 gateway 1.1.1.1",
          "inet route add 10.0.0.0 netmask 255.0.0.0 gateway 1.1.1.1 distance 10 weight 1",
          "inet route add 10.0.0.0 netmask 255.0.0.0 gateway 1.1.1.1 weight 2 < n",
          "inet route add 10.0.0.0 netmask 255.0.0.0 gateway 1.1.1.1 weight 2 < y",
          "inet route add 10.0.0.0 gateway 1.1.1.1", "inet route add default gateway 1.1.1.9 distance 20",
          "inet route delete default next-hop 1.1.1.9", "inet route delete 10.0.0.0 < n",
          "inet route delete 10.0.0.0 < yes"});
    ExpectTranscript("routing/main_table");
}

TEST_F(RouteCommandsTest, TableComesAndGoesWithItsRoutes) {
    Type({"inet route add 10.0.0.0 netmask 255.0.0.0 gateway 1.1.1.1 table name Vpn table number 5",
          "inet route add 10.0.0.0 netmask 255.0.0.0 gateway 1.1.1.1 distance 20 table number 6",
          "inet route add 11.0.0.0 netmask 255.0.0.0 gateway 1.1.1.1 table name vpn",
          "inet route add 10.0.0.0 netmask 255.0.0.0 gateway 1.1.1.1", // those of other tables stay
          "inet route delete 10.0.0.0 table 6"});
    Configure({"ip rule p 1024", "set table VPN"});
    Type({"inet route delete 11.0.0.0 netmask 255.0.0.0 table name vpn",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 next-hop 1.1.1.1 table 5 table name vpn",
          "inet route clear table 5 < y"});
    Configure({"no ip rule p 1024"});
    Type({"inet route delete 10.0.0.0 netmask 255.0.0.0 next-hop 1.1.1.1 table name VPN"});
    ExpectTranscript("routing/tables");
}

TEST_F(RouteCommandsTest, AddIsRefusedBeforeAnythingIsSent) {
    Configure({"table 5 VPN", "table 6 LAN"});
    Configure({"router dhcp", "distance 60 default 50"}, "zdhcpd");
    Type({"inet route add 10.0.0.0 gateway 1.1.1.1 table name lan table number 5",
          "inet route add 10.0.0.0 gateway 1.1.1.1 table name lan table number 7",
          "inet route add 10.0.0.0 gateway 1.1.1.1 table name none",
          "inet route add 10.0.0.0 gateway 1.1.1.1 distance 60 table name vpn table number 5",
          "inet route add 10.1.2.3 netmask 255.0.0.0 gateway 1.1.1.1 distance 50 weight 7",
          "inet route add 10.1.2.3 netmask 255.0.0.0 gateway 1.1.1.1 distance 110"});
    ExpectTranscript("routing/add_refusals");
}

TEST_F(RouteCommandsTest, ArgumentsThatAreNoneReachNoCommand) {
    AnswerEach({});
    Type({"inet route add '10.0.0.0;reboot' gateway 1.1.1.1", "inet route add '' gateway 1.1.1.1",
          "inet route add 10.0.0.0 netmask 255.0.255.0 gateway 1.1.1.1",
          "inet route add 10.0.0.0 gateway `id`",
          "inet route add 10.0.0.0 gateway 1.1.1.1 table number '5 x'",
          "inet route add 10.0.0.0 gateway 1.1.1.1 table name 'a\" -c \"b' table number 5",
          "inet route add 10.0.0.0 gateway 1.1.1.1 distance -1",
          "inet route add 10.0.0.0 gateway 1.1.1.1 weight '1 2'", "inet route delete 10.0.0.0 table '5 x'",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 next-hop $x", "inet route clear table name $x",
          "inet show routing static table ''", "inet dhcp client route-distance 70 default-route '&'"});
    ExpectTranscript("routing/arguments");
}

TEST_F(RouteCommandsTest, DeleteRefusals) {
    Configure({"table 5 VPN-2", "table 6 LAN", "ip route 10.0.0.0/8 1.1.1.1", "ip route 10.0.0.0/8 1.1.1.2",
               "ip route table 5 10.0.0.0/8 1.1.1.2", "ip route table 7 10.0.0.0/8 1.1.1.3"});
    Type({"inet route delete 11.0.0.0", "inet route delete 10.0.0.0 table 8",
          "inet route delete 10.0.0.0 table 7",
          "inet route delete 10.0.0.0 table name vpn", // begins the name
          "inet route delete 10.0.0.0 table name none", "inet route delete default",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 table 7",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 table 5 table name lan",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 table name none",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 next-hop 1.1.1.1 table 8",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 next-hop 1.1.1.1 table 254 table name vpn",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 next-hop 1.1.1.1 table 6 table name lan",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 next-hop 1.1.1.3",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 table 254 table name vpn < n"}); // asks no name
    ExpectTranscript("routing/delete_refusals");
    EXPECT_EQ(FormatRouteDeleteLog("0.0.0.0", "0.0.0.0", "1.1.1.1", "5", ""),
              "Command: inet route delete default next-hop 1.1.1.1 table 5");
}

TEST_F(RouteCommandsTest, WhatWasFoundIsDeletedOnceInItsTable) {
    const Lines routes{"table 5 VPN",
                       "table 6 LAN",
                       "ip route 10.0.0.0/8 1.1.1.1",
                       "ip route table 5 10.0.0.0/8 1.1.1.1",
                       "ip route table 5 10.1.0.0/16 1.1.1.2",
                       "ip route table 6 10.0.0.0/8 1.1.1.3",
                       "ip route table 6 10.0.0.0/16 1.1.1.3"};
    Configure(routes);
    Type({"inet route delete 10.0.0.0 table name lan < y", "inet route delete 10.1.0.0 table 254",
          "inet route delete 10.0.0.0 table 254"});
    Configure({"ip route 10.0.0.0/8 1.1.1.1"});
    Type({"inet route delete 10.0.0.0 < y"});
    AnswerEach({"ip route table 5 10.0.0.0/8 1.1.1.1\nip route table 5 10.0.0.0/16 1.1.1.1\n",
                "ip route table 5 ", kVpn, kVpn, "", ""});
    Type({"inet route delete 10.0.0.0 table 5 < y"});
    ExpectTranscript("routing/delete_found");
}

// In the order of their calls, each program fails once.
TEST_F(RouteCommandsTest, DaemonThatRefuses) {
    const std::string distance = "router dhcp\n distance 70\n";
    const std::string host = "ip route table 254 10.0.0.0/32 1.1.1.1\n";
    AnswerEach({"", kMain, distance, distance, "", host, kMain});
    Type({"! inet route add 10.0.0.0 gateway 1.1.1.1"});
    AnswerEach({"", kMain, distance, distance, "", "ip route 10.0.0.0/32\nip rou", kMain});
    Type({"inet route add 10.0.0.0 gateway 1.1.1.1"}); // taken, and not shown
    AnswerEach(
        {"", kMain, kMain, "", distance, distance, "", "ip route table 5 10.0.0.0/32 1.1.1.1\n", kVpn});
    Type({"! inet route add 10.0.0.0 gateway 1.1.1.1 table number 5"});
    const std::string routes = "ip route table 5 10.0.0.0/8 1.1.1.1\nip route table 5 11.0.0.0/8 1.1.1.2\n";
    AnswerEach({routes, kVpn, routes, kVpn, kVpn, routes, "", "!\n", kVpn, "!\n"});
    Type({"! inet route delete 10.0.0.0 netmask 255.0.0.0 next-hop 1.1.1.1 table 5"});
    AnswerEach({routes, kVpn, "!\n", "", kVpn, "!\n", "", kVpn, "!\n"});
    Type({"! inet route clear table 5 < y"});
    AnswerEach({"ip route 10.0.0.0/8 1.1.1.1\nip route 10.0.0.0/8 1.1.1.1 20\n", kMain});
    Type({"inet route delete 10.0.0.0 netmask 255.0.0.0 next-hop 1.1.1.1 < y"}); // twins
    ExpectTranscript("routing/daemon");
}

TEST_F(RouteCommandsTest, ClearTakesOneTableOrAll) {
    Type({"inet route clear"});
    Configure({"table 5 VPN", "table 6 LAN", "ip route 10.0.0.0/8 1.1.1.1",
               "ip route table 5 10.0.0.0/8 1.1.1.2", "ip route table 5 11.0.0.0/8 1.1.1.2",
               "ip route table 5 12.0.0.0/8 1.1.1.2", "ip route table 6 10.0.0.0/8 1.1.1.3"});
    Type({"inet route clear < n", "inet route clear table name none < y",
          "inet route clear table name vp < y", "inet route clear table name vpn < y",
          "inet route clear < y"});
    ExpectTranscript("routing/clear");
}

TEST_F(RouteCommandsTest, WithoutTheLockNothingIsDeleted) {
    Configure({"ip route 10.0.0.0/8 1.1.1.1"});
    ASSERT_EQ(rmdir("/run/lock/run/quagga"), 0);
    Type({"inet route clear < y", "inet route delete 10.0.0.0"});
    ExpectTranscript("routing/no_lock");
}

TEST_F(RouteCommandsTest, Listings) {
    support::WriteFile("/sbin/textpager.sh", "#!/bin/sh\nsed 's/^/page: /'\n", 0755);
    Type({"inet show routing static"});
    Configure(
        {"table 5 VPN", "table 6 LAN", "ip route 10.0.0.0/8 1.1.1.1", "ip route table 5 10.0.0.0/8 1.1.1.2"});
    Type({"inet show routing static", "inet show routing static table 5",
          "inet show routing static table name vpn", "inet show routing static table 6",
          "inet show routing static table name lan", "inet show routing static table name la",
          "inet show routing"});
    PlayOnFullDisk("inet show routing static", ShowStaticRoutes);
    PlayOnFullDisk("inet show routing static table 5", [] { return ShowRouteTable("5"); });
    ExpectTranscript("routing/listings");
}

TEST_F(RouteCommandsTest, DhcpDistance) {
    WatchDaemon("zdhcpd");
    Type({"inet dhcp client route-distance 60", "inet dhcp client route-distance 60 default-route 50"});
    Configure({"ip route 10.0.0.0/8 1.1.1.1", "ip route 11.0.0.0/8 1.1.1.1 20"});
    Type({"inet dhcp client route-distance 10", "inet dhcp client route-distance 30 default-route 20",
          "inet dhcp client route-distance 110", "inet dhcp client route-distance 30 default-route 110"});
    support::WriteFile("/run/quagga/zdhcpd.down", "");
    Type({"inet dhcp client route-distance 30", "inet show dhcp client", "inet show routing dhcp"});
    ExpectTranscript("routing/dhcp_distance");
}

TEST_F(RouteCommandsTest, DhcpReports) {
    Type({"inet show routing dhcp"});
    WriteRecord("DEFAULT_DHCP_METRIC 75\nETH0_IP dhcp\nETH0_MASK dhcp\nETH0_BROADCAST dhcp\nETH0_DHCP_ROUTE "
                "on\nETH0_DHCP_NTP on\nETH0_DHCP_METRIC 90\nETH1_IP 10.0.0.1\nETH1_MASK 255.0.0.0\n");
    Type({"inet show routing dhcp"});
    support::WriteFile("/run/quagga/dhcp-routes", "eth0       10.0.0.0/8          192.168.1.1      70\n");
    Configure({"router dhcp", "distance 60 default 50"}, "zdhcpd");
    Type({"inet show routing dhcp", "inet show dhcp client"});
    support::WriteFile(path_list::local_settings, "ETH0_IP dhcp\n"); // not as its guard knows it
    Type({"inet show dhcp client"});
    ExpectTranscript("routing/dhcp_reports");
}

// A lock that was taken would show as an added file.
TEST_F(RouteCommandsTest, PassiveNode) {
    JoinCluster(1);
    AnswerEach({});
    Type({"inet route add 10.0.0.0 gateway 1.1.1.1", "inet route add 10.0.0.0 gateway 1.1.1.1 table name a",
          "inet route delete 10.0.0.0", "inet route delete 10.0.0.0 netmask 255.0.0.0",
          "inet route delete 10.0.0.0 netmask 255.0.0.0 next-hop 1.1.1.1", "inet route clear",
          "inet route clear table name a", "inet show routing", "inet show routing static",
          "inet show routing static table 5", "inet show routing static table name a",
          "inet dhcp client route-distance 60", "inet show routing dhcp", "inet show dhcp client"});
    ExpectTranscript("routing/passive");
}

} // namespace
} // namespace routing
