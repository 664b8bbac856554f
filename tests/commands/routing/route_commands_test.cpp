#include "commands/routing/dhcp_distance.h"
#include "commands/routing/route_add.h"
#include "commands/routing/route_clear.h"
#include "commands/routing/route_delete.h"
#include "commands/routing/route_forms.h"
#include "commands/routing/route_show.h"
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

const std::string kRoute1 = "10.0.0.0         255.0.0.0        1.1.1.1          10       1  \n";
const std::string kRoute2 = "10.0.0.0         255.0.0.0        1.1.1.2          10       1  \n";

class RouteCommandsTest : public RoutingAppliance {
protected:
    static std::string Listing(const std::string& table, const std::string& lines) {
        return "Table " + table + "\n" + kListHead + lines;
    }

    static Output Add(bool expected, const std::string& netmask, const std::string& distance = "",
                      const std::string& weight = "", const std::string& answers = "") {
        return Do(
            expected, [&] { return RouteAdd("10.0.0.0", netmask, "1.1.1.1", "254", "", distance, weight); },
            answers);
    }
};

TEST_F(RouteCommandsTest, LifeOfARouteOfTheMainTable) {
    EXPECT_EQ(Do(true, [] { return RouteAdd("10.1.2.3", "255.0.0.0", "1.1.1.1", "254", "", "", ""); }),
              (Output{"Route destination has been automatically adjusted accordingly to netmask.\n"
                      "The following static route has been added:\n" +
                          Listing("254 (MAIN)", kRoute1),
                      ""}));
    EXPECT_EQ(Configured("ip route"), "ip route 10.0.0.0/8 1.1.1.1\n");
    EXPECT_THAT(TakeLog(),
                ElementsAre(LogLine{6, "<RT_ADD> Command: inet route add 10.1.2.3 netmask 255.0.0.0 "
                                       "gateway 1.1.1.1 table number 254. Successfully added new "
                                       "static route."}));
    // The same once more asks nothing; the defaults count as typed.
    EXPECT_EQ(Add(true, "255.0.0.0", "10", "1").out,
              "The following static route has been added:\n" + Listing("254 (MAIN)", kRoute1));
    const std::string question = "The following static route will be replaced:\n" +
                                 Listing("254 (MAIN)", kRoute1) + "Continue? [y/N] ";
    EXPECT_EQ(Add(false, "255.0.0.0", "", "2", "n\n").out, question + "Command aborted.\n");
    EXPECT_EQ(Configured("ip route"), "ip route 10.0.0.0/8 1.1.1.1\n");
    EXPECT_EQ(Add(true, "255.0.0.0", "", "2", "y\n").out,
              question + "The following static route has been added:\n" +
                  Listing("254 (MAIN)", "10.0.0.0         255.0.0.0        1.1.1.1          10       2  \n"));
    EXPECT_EQ(Configured("ip route"), "ip route 10.0.0.0/8 1.1.1.1 10 2\n");
    EXPECT_THAT(support::ReadFile("/etc/quagga/zebra.conf"),
                ::testing::HasSubstr("ip route 10.0.0.0/8 1.1.1.1 10 2\n"));

    // Without a mask: a host, and the default route.
    EXPECT_EQ(Add(true, "").err, "");
    EXPECT_TRUE(RouteAdd("0.0.0.0", "", "1.1.1.9", "254", "", "20", ""));
    EXPECT_EQ(Configured("ip route"), "ip route 0.0.0.0/0 1.1.1.9 20\nip route 10.0.0.0/8 1.1.1.1 10 2\n"
                                      "ip route 10.0.0.0/32 1.1.1.1\n");
    (void)TakeLog();
    const std::string line = "0.0.0.0          0.0.0.0          1.1.1.9          20       1  ";
    EXPECT_EQ(Do(true, [] { return RouteDeleteNextHop("0.0.0.0", "", "1.1.1.9", "254", ""); }),
              (Output{Listing("254 (MAIN)", line + "\n"), ""}));
    EXPECT_THAT(
        TakeLog(),
        ElementsAre(LogLine{
            6, "The following route was deleted: Table 254 (MAIN), Destination      Netmask          Next "
               "hop         Distance Weight, -----------      -------          --------         -------- "
               "------, " +
                   line + ", "}));
    const std::string rest =
        Listing("254 (MAIN)", "10.0.0.0         255.0.0.0        1.1.1.1          10       2  \n"
                              "10.0.0.0         255.255.255.255  1.1.1.1          10       1  \n");
    EXPECT_EQ(Do(
                  true, [] { return RouteDeleteTo("10.0.0.0", "254"); }, "yes\n")
                  .out,
              "You are going to delete the following static routes:\n\n" + rest +
                  "Continue? [y/N] Static route has been deleted successfully\n");
    EXPECT_EQ(Configured("ip route"), "");
}

TEST_F(RouteCommandsTest, TableComesAndGoesWithItsRoutes) {
    const auto add = [](const char* destination, const char* table, const char* name) {
        return RouteAdd(destination, "255.0.0.0", "1.1.1.1", table, name, "", "");
    };
    EXPECT_EQ(Do(true, [&] { return add("10.0.0.0", "5", "Vpn"); }).out,
              "The following static route has been added:\n" + Listing("5 (VPN)", kRoute1));
    EXPECT_EQ(Do(true, [&] { return add("10.0.0.0", "6", ""); }).out,
              "The following static route has been added:\n" + Listing("6 (TABLE-6)", kRoute1));
    EXPECT_EQ(Do(true, [] { return RouteAdd("11.0.0.0", "255.0.0.0", "1.1.1.1", "5", "vpn", "", ""); }).err,
              "");
    EXPECT_EQ(Configured("table"), "table 5 VPN\ntable 6 TABLE-6\ntable 254 MAIN\n");

    EXPECT_EQ(Do(true, [] { return RouteDeleteTo("10.0.0.0", "6"); }).err, "");
    EXPECT_EQ(Configured("table"), "table 5 VPN\ntable 254 MAIN\n");

    // A rule needs the table: its last route stays, the one before may go.
    Configure({"ip rule p 1024", "set table VPN"});
    EXPECT_EQ(Do(true, [] { return RouteDeleteMasked("11.0.0.0", "255.0.0.0", "5", "vpn"); }).err, "");
    EXPECT_EQ(
        Do(false, [] { return RouteDeleteNextHop("10.0.0.0", "255.0.0.0", "1.1.1.1", "5", "vpn"); }),
        (Output{"", "Unable to delete this route, because it is the only route in the table referenced by at "
                    "least one policy rule\nFailed to delete route\n"}));
    EXPECT_EQ(Do(
                  false, [] { return RouteClearTable("5"); }, "y\n")
                  .err,
              "unable to clear table 5 because it is referenced by at least one policy rule\nfailed to clear "
              "table\n");
    EXPECT_EQ(Configured("ip route"), "ip route table 5 10.0.0.0/8 1.1.1.1\n");
    Configure({"no ip rule p 1024"});
    EXPECT_EQ(Do(true, [] { return RouteDeleteNextHop("10.0.0.0", "255.0.0.0", "1.1.1.1", "5", "VPN"); }).err,
              "");
    EXPECT_EQ(Configured("table") + Configured("ip route"), "table 254 MAIN\n");
}

TEST_F(RouteCommandsTest, AddIsRefusedBeforeAnythingIsSent) {
    Configure({"table 5 VPN", "table 6 LAN", "ip route 9.0.0.0/8 1.1.1.1"});
    Configure({"router dhcp", "distance 60 default 50"}, "zdhcpd");
    const std::string before = Show("show running-config");
    const auto snapshot = support::TakeSnapshot();
    (void)TakeLog();
    const std::string failed = "Failed to add new static route. ";
    const struct {
        const char *table, *name, *distance;
        std::string error;
    } cases[] = {
        {"5", "lan", "", failed + "Table name doesn't match table number or table doesn't exist."},
        {"7", "lan", "", failed + "Table name not unique."},
        {"", "", "", failed + "Can't add new table."},
        {"5", "vpn", "60", failed + "Distance coincides with a distance of DHCP."},
        {"5", "", "50", failed + "Distance coincides with a distance of DHCP."},
        {"254", "", "110", failed + "Distance coincides with a distance of OSPF."},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(
            Do(false,
               [&] { return RouteAdd("10.0.0.0", "", "1.1.1.1", test.table, test.name, test.distance, ""); }),
            (Output{"", test.error + "\n"}));
        const auto part = [](std::string word, const std::string& text) {
            return text.empty() ? "" : word + text;
        };
        EXPECT_THAT(
            TakeLog(),
            ElementsAre(LogLine{6, "<RT_ADD> Command: inet route add 10.0.0.0 gateway 1.1.1.1" +
                                       part(" distance ", test.distance) + part(" table name ", test.name) +
                                       part(" table number ", test.table) + ". " + test.error}));
    }
    EXPECT_EQ(Show("show running-config"), before);
    support::ExpectUnchanged(snapshot);
}

TEST_F(RouteCommandsTest, ArgumentsThatAreNoneReachNoCommand) {
    Answer({});
    const struct {
        std::function<bool()> action;
        const char* error;
    } cases[] = {
        {[] { return RouteAdd("10.0.0.0;reboot", "", "1.1.1.1", "254", "", "", ""); },
         "wrong destination: \"10.0.0.0;reboot\""},
        {[] { return RouteAdd("", "", "1.1.1.1", "254", "", "", ""); }, "wrong destination: \"\""},
        {[] { return RouteAdd("10.0.0.0", "255.0.255.0", "1.1.1.1", "254", "", "", ""); },
         "wrong netmask: \"255.0.255.0\""},
        {[] { return RouteAdd("10.0.0.0", "", "`id`", "254", "", "", ""); }, "wrong next hop: \"`id`\""},
        {[] { return RouteAdd("10.0.0.0", "", "1.1.1.1", "5\n", "", "", ""); }, "wrong table number: \"5?\""},
        {[] { return RouteAdd("10.0.0.0", "", "1.1.1.1", "5", "a\" -c \"b", "", ""); },
         "wrong table name: \"a\" -c \"b\""},
        {[] { return RouteAdd("10.0.0.0", "", "1.1.1.1", "5", "", "-1", ""); }, "wrong distance: \"-1\""},
        {[] { return RouteAdd("10.0.0.0", "", "1.1.1.1", "5", "", "", "1 2"); }, "wrong weight: \"1 2\""},
        {[] { return RouteDeleteTo("10.0.0.0", "5 x"); }, "wrong table number: \"5 x\""},
        {[] { return RouteDeleteNextHop("10.0.0.0", "", "", "5", ""); }, "wrong next hop: \"\""},
        {[] { return RouteClearTableByName("$x"); }, "wrong table name: \"$x\""},
        {[] { return ShowRouteTable(""); }, "wrong table number: \"\""},
        {[] { return SetDhcpRouteDistance("70", "&"); }, "wrong default distance: \"&\""},
    };
    for (const auto& [action, error] : cases) {
        EXPECT_EQ(Do(false, action), (Output{"", std::string(error) + "\n"}));
    }
    ExpectCommands({});
}

TEST_F(RouteCommandsTest, DaemonThatRefusesOrHidesARoute) {
    const support::Answer tables{.out = "Table MAIN (ID 254):\n"};
    const support::Answer distance{.out = "router dhcp\n distance 70\n"};
    const std::string log = "Command: inet route add 10.0.0.0 gateway 1.1.1.1 table number 254";
    Answer({{}, tables, distance, distance, {.status = 1}});
    EXPECT_EQ(Add(false, ""), (Output{"", log + ". Failed to add new static route.\n"}));
    EXPECT_THAT(TakeLog(), ElementsAre(LogLine{3, "<RT_ADD> " + log + ". Failed to add new static route."}));
    ExpectCommands(
        {"/usr/bin/vtysh -d zebra -c 'show running-config'", "/usr/bin/vtysh -c 'show tables static'",
         "/usr/bin/vtysh -d zdhcpd -c 'show running-config'",
         "/usr/bin/vtysh -d zdhcpd -c 'show running-config'",
         "/usr/bin/vtysh -d zebra -c 'conf t' -c 'ip route table 254 10.0.0.0/32 1.1.1.1 10 1' -c end -c "
         "'write file'"});

    Answer({{}, tables, distance, distance, {}, {.out = "ip route 10.0.0.0/8\nip rou"}});
    EXPECT_EQ(
        Add(false, ""),
        (Output{"Static route has been added successfully. However, it remains inactive, because there is no "
                "interface you can assign it to.\nContact the technical support.\n",
                ""}));
    EXPECT_THAT(TakeLog(), ElementsAre(LogLine{6, "<RT_ADD> " + log + " Failed to add new static route."}));

    Answer({{}, tables, distance, {.status = 1}});
    EXPECT_EQ(Add(false, "").err, "Failed to get DHCP distance. DHCP daemon must be running.\n");
}

TEST_F(RouteCommandsTest, DeleteRefusals) {
    Configure({"table 5 VPN", "table 6 LAN", "ip route 10.0.0.0/8 1.1.1.1",
               "ip route table 5 10.0.0.0/8 1.1.1.2", "ip route table 7 10.0.0.0/8 1.1.1.3"});
    const std::string before = Show("show running-config");
    const std::string failed = "Failed to delete static route. ";
    const struct {
        std::function<bool()> action;
        std::string error;
    } cases[] = {
        {[] { return RouteDeleteTo("11.0.0.0", "254"); }, "There is no static route to 11.0.0.0"},
        {[] { return RouteDeleteTo("10.0.0.0", "8"); }, failed + "Routes doesn't exist in this table."},
        {[] { return RouteDeleteTo("10.0.0.0", "7"); }, failed + "Table doesn't exist."},
        {[] { return RouteDeleteMasked("10.0.0.0", "", "254", ""); },
         "There is no static route to 10.0.0.0 with netmask 255.255.255.255"},
        {[] { return RouteDeleteMasked("10.0.0.0", "255.0.0.0", "7", ""); }, failed + "Table doesn't exist."},
        {[] { return RouteDeleteMasked("10.0.0.0", "255.0.0.0", "5", "lan"); },
         failed + "Table name doesn't match table number."},
        {[] { return RouteDeleteMasked("10.0.0.0", "255.0.0.0", "", "none"); },
         "There is no static route to 10.0.0.0 with netmask 255.0.0.0"},
        {[] { return RouteDeleteNextHop("10.0.0.0", "255.0.0.0", "1.1.1.1", "8", ""); },
         failed + "Table doesn't exist."},
        {[] { return RouteDeleteNextHop("10.0.0.0", "255.0.0.0", "1.1.1.1", "254", "vpn"); },
         failed + "Table name doesn't match table number."},
        {[] { return RouteDeleteNextHop("10.0.0.0", "255.0.0.0", "1.1.1.1", "6", "lan"); },
         failed + "Routes doesn't exist in this table."},
        {[] { return RouteDeleteNextHop("10.0.0.0", "255.0.0.0", "1.1.1.2", "254", ""); },
         "There is no static route to 10.0.0.0 with netmask 255.0.0.0 and next hop 1.1.1.2"},
    };
    for (const auto& [action, error] : cases) {
        EXPECT_EQ(Do(false, action), (Output{"", error + "\n"}));
    }
    (void)TakeLog();
    Configure({"ip route 10.0.0.0/8 1.1.1.2"});
    EXPECT_EQ(Do(
                  false, [] { return RouteDeleteMasked("10.0.0.0", "255.0.0.0", "254", "main"); }, "\n"),
              (Output{"You are going to delete the following static routes:\n\n" +
                          Listing("254 (MAIN)", kRoute1 + kRoute2) + "Continue? [y/N] ",
                      ""}));
    EXPECT_THAT(
        TakeLog(),
        ElementsAre(LogLine{6, "Command: inet route delete 10.0.0.0 netmask 255.0.0.0 table 254 name main"},
                    LogLine{6, "Command: inet route delete default next-hop. "},
                    LogLine{6, "Command aborted"}));
    EXPECT_EQ(FormatRouteDeleteLog("0.0.0.0", "0.0.0.0", "1.1.1.1", "5", ""),
              "Command: inet route delete default next-hop 1.1.1.1 table 5");
    Configure({"no ip route 10.0.0.0/8 1.1.1.2"});
    EXPECT_EQ(Show("show running-config"), before);
}

TEST_F(RouteCommandsTest, TwinsThatTheDaemonShouldNotHold) {
    Answer({{.out = "ip route 10.0.0.0/8 1.1.1.1\nip route 10.0.0.0/8 1.1.1.1 20\n"},
            {.out = "Table MAIN (ID 254):\n"}});
    EXPECT_EQ(
        Do(
            true, [] { return RouteDeleteNextHop("10.0.0.0", "255.0.0.0", "1.1.1.1", "254", ""); }, "y\n")
            .out,
        "There are several static routes with the same destination, netmask and next hop:\n" +
            Listing("254 (MAIN)",
                    kRoute1 + "10.0.0.0         255.0.0.0        1.1.1.1          20       1  \n") +
            "Some settings, configured long ago, are incorrect.\nContact the technical support.\n"
            "Do you want to delete all these routes? [y/N] Routes have been successfully deleted\n");
    const std::string sent =
        "/usr/bin/vtysh -d zebra -c 'configure terminal' -c 'no ip route 10.0.0.0/8 1.1.1.1' "
        "-c end -c 'write file'";
    ExpectCommands({"/usr/bin/vtysh -d zebra -c 'show running-config'",
                    "/usr/bin/vtysh -c 'show tables static'", sent, sent});
}

TEST_F(RouteCommandsTest, ClearTakesOneTableOrAll) {
    EXPECT_EQ(Do(true, RouteClearAll).out, "There are no static routes\n");
    Configure({"table 5 VPN", "table 6 LAN", "ip route 10.0.0.0/8 1.1.1.1",
               "ip route table 5 10.0.0.0/8 1.1.1.2", "ip route table 5 11.0.0.0/8 1.1.1.2",
               "ip route table 5 12.0.0.0/8 1.1.1.2", "ip route table 6 10.0.0.0/8 1.1.1.3"});
    const std::string before = Show("show running-config");
    const std::string question = "Delete all the static routes? [y/N] ";
    EXPECT_EQ(Do(false, RouteClearAll, "n\n").out,
              question + "Removal of the static routes has been canceled\n");
    for (const char* name : {"none", "vp"}) {
        EXPECT_EQ(Do(
                      false, [&] { return RouteClearTableByName(name); }, "y\n")
                      .err,
                  "failed to clear table: table name doesn't match table number\n");
    }
    EXPECT_EQ(Show("show running-config"), before);
    EXPECT_EQ(Do(
                  true, [] { return RouteClearTableByName("vpn"); }, "y\n"),
              (Output{question + "The static routes have been removed\n", ""}));
    EXPECT_EQ(
        Configured("table") + Configured("ip route"),
        "table 6 LAN\ntable 254 MAIN\nip route table 6 10.0.0.0/8 1.1.1.3\nip route 10.0.0.0/8 1.1.1.1\n");
    (void)TakeLog();
    EXPECT_EQ(Do(true, RouteClearAll, "y\n").err, "");
    EXPECT_EQ(Configured("table") + Configured("ip route"), "table 254 MAIN\n");
    EXPECT_THAT(TakeLog(), ElementsAre(LogLine{6, "command: inet route clear"}));

    Answer({{.out = "ip route 10.0.0.0/8 1.1.1.1\n"}, {.status = 1}});
    EXPECT_EQ(Do(false, RouteClearAll, "y\n").err, "failed to delete route for 10.0.0.0\n");
}

TEST_F(RouteCommandsTest, Listings) {
    EXPECT_EQ(Do(true, ShowStaticRoutes).out, "No static routes defined\n");
    Configure(
        {"table 5 VPN", "table 6 LAN", "ip route 10.0.0.0/8 1.1.1.1", "ip route table 5 10.0.0.0/8 1.1.1.2"});
    const std::string vpn = Listing("5 (VPN)", kRoute2);
    EXPECT_EQ(
        Do(true, ShowStaticRoutes),
        (Output{vpn + "\n" + Listing("6 (LAN)", "") + "\n" + Listing("254 (MAIN)", kRoute1) + "\n", ""}));
    EXPECT_EQ(Do(true, [] { return ShowRouteTable("5"); }), (Output{vpn, ""}));
    EXPECT_EQ(Do(true, [] { return ShowRouteTableByName("vpn"); }), (Output{vpn, ""}));
    EXPECT_EQ(Do(false, [] { return ShowRouteTable("6"); }).err,
              "Failed to show static route. Routes don't exist in this table.\n");
    EXPECT_EQ(Do(false, [] { return ShowRouteTableByName("lan"); }).err,
              "Failed to show static route. Routes doesn't exist in this table.\n");
    EXPECT_EQ(Do(false, [] { return ShowRouteTableByName("la"); }).err,
              "Failed to show static route. Table name doesn't match table number.\n");
    support::WriteFile("/sbin/textpager.sh", "#!/bin/sh\nsed 's/^/page: /'\n", 0755);
    EXPECT_EQ(
        Do(true, ShowRouting),
        (Output{"page: Codes: S - static route, > - selected route, * - FIB route\npage: \n"
                "page: S   10.0.0.0/8 [10/0] via 1.1.1.1 inactive\n",
                "the default route is not set, this could prevent from the reliable mode of operation\n"}));
}

TEST_F(RouteCommandsTest, DhcpDistance) {
    EXPECT_EQ(Do(true, [] { return SetDhcpRouteDistance("60", ""); }).out, "Set distance to 60\n");
    EXPECT_EQ(Do(true, [] { return SetDhcpRouteDistance("60", "50"); }).out,
              "Set distance to 60, default distance to 50\n");
    EXPECT_THAT(
        TakeLog(),
        Contains(LogLine{6, "<DHCPC_DIST> Command: inet dhcp client route-distance 60 default-route 50"}));
    const std::string set = "!\nrouter dhcp\n distance 60 default 50\n!\n";
    EXPECT_EQ(Show("show running-config", "zdhcpd"), set);
    EXPECT_EQ(support::ReadFile("/etc/quagga/zdhcpd.conf"), set);

    Configure({"ip route 10.0.0.0/8 1.1.1.1", "ip route 11.0.0.0/8 1.1.1.1 20"});
    EXPECT_EQ(Do(false, [] { return SetDhcpRouteDistance("10", ""); }),
              (Output{kListHead + kRoute1,
                      "Failed to set distance. It coincides with a distance of static routes.\n"}));
    EXPECT_EQ(Do(false, [] { return SetDhcpRouteDistance("30", "20"); }).out,
              kListHead + std::string("11.0.0.0         255.0.0.0        1.1.1.1          20       1  \n"));
    EXPECT_EQ(Do(false, [] { return SetDhcpRouteDistance("30", "110"); }).err,
              "Failed to set distance. Distance coincides with a distance of OSPF.\n");
    EXPECT_EQ(Show("show running-config", "zdhcpd"), set);
    EXPECT_THAT(TakeLog(),
                Contains(LogLine{6, "<DHCPC_DIST> Command: inet dhcp client route-distance 30 "
                                    "default-route 110. Failed to set distance. Distance coincides "
                                    "with a distance of OSPF."}));
    support::WriteFile("/run/quagga/zdhcpd.down", "");
    EXPECT_EQ(Capture([] { EXPECT_FALSE(SetDhcpRouteDistance("30", "")); }).out, "");
    EXPECT_THAT(Do(false, ShowDhcpClient).err, "Failed to get DHCP distance. DHCP daemon must be running.\n");
    EXPECT_THAT(TakeLog(),
                Contains(LogLine{3, "Command: inet show dhcp client Failed to get DHCP distance. DHCP "
                                    "daemon must be running."}));
}

TEST_F(RouteCommandsTest, DhcpReports) {
    EXPECT_EQ(Do(true, ShowDhcpRoutes).out, "DHCP is not enabled\n");
    WriteRecord("DEFAULT_DHCP_METRIC 75\nETH0_IP dhcp\nETH0_MASK dhcp\nETH0_BROADCAST dhcp\nETH0_DHCP_ROUTE "
                "on\nETH0_DHCP_NTP on\nETH0_DHCP_METRIC 90\nETH1_IP 10.0.0.1\nETH1_MASK 255.0.0.0\n");
    EXPECT_EQ(Do(true, ShowDhcpRoutes).out, "No DHCP routes exist\n");
    const std::string route = "eth0       10.0.0.0/8          192.168.1.1      70\n";
    support::WriteFile("/run/quagga/dhcp-routes", route);
    EXPECT_EQ(Do(true, ShowDhcpRoutes).out,
              "Interface  Network             Gateway          Distance\n" + route);
    Configure({"router dhcp", "distance 60 default 50"}, "zdhcpd");
    EXPECT_EQ(Do(true, ShowDhcpClient).out, "Administrative distance for DHCP/PPP routes: 60\n"
                                            "Administrative distance for default DHCP/PPP routes: 50\n"
                                            "Default metric for DHCP/PPP routes: 75\n\n"
                                            "Interface  DHCP  Routes  Metric   DNS  NTP\n"
                                            "---------  ----  ------  ------   ---  ---\n"
                                            "eth0       yes   yes     90       no   yes\n"
                                            "eth1       no    no      default  no   no\n");
    Answer({{.status = 1}});
    EXPECT_EQ(Do(false, ShowDhcpRoutes).err, "Failed to show dhcp route\n");
}

TEST_F(RouteCommandsTest, PassiveNodeTakesNoLockAndAsksNobody) {
    JoinCluster(1);
    Answer({});
    ASSERT_EQ(rmdir("/run/lock/run/quagga"), 0); // a lock taken would show below
    ASSERT_EQ(mkdir("/run/lock/run/quagga", 0755), 0);
    const std::function<bool()> actions[] = {
        [] { return RouteAdd("10.0.0.0", "", "1.1.1.1", "254", "", "", ""); },
        [] { return RouteDeleteTo("10.0.0.0", "254"); },
        [] { return RouteDeleteMasked("10.0.0.0", "", "254", ""); },
        [] { return RouteDeleteNextHop("10.0.0.0", "", "1.1.1.1", "254", ""); },
        RouteClearAll,
        [] { return RouteClearTableByName("a"); },
        ShowRouting,
        ShowStaticRoutes,
        [] { return ShowRouteTable("5"); },
        [] { return ShowRouteTableByName("a"); },
        [] { return SetDhcpRouteDistance("60", ""); },
        ShowDhcpRoutes,
        ShowDhcpClient,
    };
    for (const auto& action : actions) {
        EXPECT_EQ(Do(false, action),
                  (Output{"", "IP routing is disabled because the cluster appliance is passive.\n"}));
    }
    ExpectCommands({});
    EXPECT_FALSE(support::Exists("/run/lock/run/quagga/s_routing.lock"));
}

} // namespace
} // namespace routing
