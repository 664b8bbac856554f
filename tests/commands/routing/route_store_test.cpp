#include "commands/routing/route_listing.h"
#include "commands/routing/route_store.h"
#include "commands/routing/tables.h"
#include "tests/commands/routing/routing_fixture.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <sstream>
#include <thread>

namespace routing {
namespace {

using support::Capture;
using support::ExpectCommands;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kAskConfig = "/usr/bin/vtysh -d zebra -c 'show running-config'";

// All fields of a route, to compare at a glance.
std::string Text(const StaticRoute& route) {
    std::ostringstream text;
    text << route.table << ": " << route.destination << "/" << route.prefix_length << " = " << route.netmask
         << " via " << route.gateway << " [" << route.distance << "," << route.weight << "]";
    return text.str();
}

std::vector<std::string> Texts(const Routes& routes) {
    std::vector<std::string> texts;
    for (const auto& [destination, route] : routes) {
        EXPECT_EQ(destination, route.destination);
        texts.push_back(Text(route));
    }
    return texts;
}

class RouteStoreTest : public RoutingAppliance {};

TEST_F(RouteStoreTest, ParsesWhatTheDaemonShows) {
    Answer({{.out = "hostname zebra\n"
                    "ip route 9.0.0.0/8 1.1.1.9\n"
                    "ip route table 5 10.0.0.0/8 1.1.1.1 20 2\n"
                    "ip  route 10.0.0.0/8   1.1.1.2 30\r\n"
                    " ip route 0.0.0.0/0 1.1.1.3\n"
                    "ip route 255.255.255.255/32 1.1.1.4\n"
                    "ip route 9.0.0.0/ip 1.1.1.5\n"
                    // none of these is a route
                    "ip route 10.0.0.0 1.1.1.1\nip route 10.0.0.0/33 1.1.1.1\nip route 10.0.0.0/-1 1.1.1.1\n"
                    "ip route 10.0.0.0/8/8 1.1.1.1\nip route / 1.1.1.1\nip route 10.0.0.0/8\nip route table\n"
                    "ip route table 5\nip route\nip\n\n \nno ip route 1.0.0.0/8 1.1.1.1\nip route "
                    "10.0.0.0/99999999999 "
                    "1.1.1.1\nip rou"}});
    const RouteStore store;
    EXPECT_THAT(Texts(store.All()), ElementsAre("254: 0.0.0.0/0 = 0.0.0.0 via 1.1.1.3 [,]",
                                                "5: 10.0.0.0/8 = 255.0.0.0 via 1.1.1.1 [20,2]",
                                                "254: 10.0.0.0/8 = 255.0.0.0 via 1.1.1.2 [30,]",
                                                "254: 255.255.255.255/32 = 255.255.255.255 via 1.1.1.4 [,]",
                                                "254: 9.0.0.0/8 = 255.0.0.0 via 1.1.1.9 [,]",
                                                "254: 9.0.0.0/ip = 0.0.0.0 via 1.1.1.5 [,]"));
    EXPECT_EQ(store.FindRoutes("10.0.0.0").size(), 2U);
    EXPECT_EQ(store.FindRoutes("10.0.0.0", "255.0.0.0").size(), 2U);
    EXPECT_EQ(store.FindRoutes("10.0.0.0", "255.255.0.0").size(), 0U);
    EXPECT_EQ(store.FindRoutes("10.0.0.0", "255.0.0.0", "").size(), 0U);
    EXPECT_EQ(store.FindRoutes("10.0.0.0", "255.0.0.0", "1.1.1.1").size(), 1U);
    EXPECT_EQ(store.FindRoutes("10.0.0.0", "255.0.0.0", "", "5").size(), 1U);
    EXPECT_EQ(store.FindRoutes("10.0.0.0", "255.0.0.0", "1.1.1.2", "5").size(), 0U);
    ExpectCommands({kAskConfig});
}

TEST_F(RouteStoreTest, EmptyOrFailedAnswerKeepsTheRoutes) {
    Answer({{.out = "ip route 9.0.0.0/8 1.1.1.9\n"},
            {},
            {.out = "ip route 8.0.0.0/8 1.1.1.9\n", .status = 1},
            {.out = "!\n"}});
    RouteStore store;
    for (const std::size_t count : {1U, 1U, 0U}) {
        store.Load();
        EXPECT_EQ(store.All().size(), count);
    }
}

TEST_F(RouteStoreTest, MaskLengthEndsAtTheFirstHole) {
    const struct {
        const char* mask;
        int length;
    } cases[] = {{"255.255.255.0", 24}, {"255.255.255.255", 32},
                 {"0.0.0.0", 0},        {"255.0.255.0", 8},
                 {"255.192.0.0", 10},   {"", 0},
                 {"255.255.255.", 24},  {"none", 0}};
    for (const auto& [mask, length] : cases) {
        EXPECT_EQ(MaskToPrefixLength(mask), length) << mask;
    }
}

TEST_F(RouteStoreTest, ListsOneTableColumnByColumn) {
    Configure({"table 5 Vpn", "ip route 10.20.30.0/24 192.168.100.200 5 200", "ip route 0.0.0.0/0 1.1.1.1",
               "ip route table 5 10.0.0.0/8 1.1.1.2 110"});
    const RouteStore store;
    EXPECT_EQ(JoinLines(FormatRoutes(store.All(), "")),
              std::string("Table 254 (MAIN)\n") + kListHead +
                  "0.0.0.0          0.0.0.0          1.1.1.1          10       1  \n"
                  "10.20.30.0       255.255.255.0    192.168.100.200  5        200\n");
    const std::string other = "10.0.0.0         255.0.0.0        1.1.1.2          110      1  \n";
    EXPECT_EQ(JoinLines(FormatRoutes(store.All(), "5")), std::string("Table 5 (VPN)\n") + kListHead + other);
    EXPECT_EQ(JoinLines(FormatRoutesPlain(store, store.FindRoutes("10.0.0.0"))), kListHead + other);
    EXPECT_THAT(FormatRoutes({}, "254"), IsEmpty());

    Routes wide;
    wide.emplace("d", StaticRoute{"1234567890123456", "gateway7890123456", "m", "8", "1234", "5678", "254"});
    EXPECT_EQ(FormatRoutes(wide, "254").back(),
              "123456789012345  m                gateway78901234  123      567");
}

TEST_F(RouteStoreTest, TableQueries) {
    Configure({"table 5 vpn", "table 7 VPN-2", "ip route table 50 10.0.0.0/8 1.1.1.1",
               "ip route table 7 10.0.0.0/8 1.1.1.1", "ip rule p 1024", "set table VPN-2"});
    EXPECT_EQ(Show("show tables static"),
              "Table VPN (ID 5):\nTable VPN-2 (ID 7):\nUnnamed table (ID 50):\nTable MAIN (ID 254):\n");
    const struct {
        const char* number; // the name of 5 begins the name that a rule has, its number the number 50
        bool exists, has_routes, can_lose_route;
        const char* name;
    } cases[] = {{"5", true, false, false, "VPN"},  {"50", false, true, true, "d"},
                 {"7", true, true, false, "VPN-2"}, {"254", true, true, true, "MAIN"},
                 {"25", false, false, true, ""},    {"", false, false, true, ""}};
    for (const auto& [number, exists, has_routes, can_lose_route, name] : cases) {
        EXPECT_EQ(TableExists(number), exists) << number;
        EXPECT_EQ(TableHasRoutes(number), has_routes) << number;
        EXPECT_EQ(CanDeleteRouteOfTable(number), can_lose_route) << number;
        EXPECT_EQ(GetTableName(number), name) << number;
    }
    EXPECT_THAT(GetTableNumbers(), ElementsAre("5", "7", "50", "254"));
    EXPECT_EQ(GetTableNumber("vpn"), "5");
    EXPECT_EQ(GetTableNumber("vpn-2"), "7");
    EXPECT_EQ(GetTableNumber("none") + GetTableNumber(""), "");
    EXPECT_TRUE(TableNameMatches("7", "vpn-2"));
    EXPECT_FALSE(TableNameMatches("7", "vpn") || TableNameMatches("", "vpn") || TableNameMatches("7", ""));
    EXPECT_FALSE(IsTableNameUnique("vpn"));
    EXPECT_TRUE(IsTableNameUnique("vp"));
    // A rule of VPN-2 holds the name VPN too.
    EXPECT_FALSE(IsTableUnreferenced("VPN"));
    EXPECT_TRUE(IsTableUnreferenced("TABLE-5"));
}

TEST_F(RouteStoreTest, FailingDaemonAnswersNoToEveryQuery) {
    support::WriteFile("/run/quagga/zebra.down", "");
    const support::Output output = Capture([] {
        EXPECT_FALSE(TableExists("254") || TableHasRoutes("254") || IsTableNameUnique("x") ||
                     TableNameMatches("254", "MAIN") || AddTable("X", "5") || IsTableUnreferenced("X") ||
                     CanDeleteRouteOfTable("5") || DeleteTable("5"));
        EXPECT_EQ(GetTableNumber("MAIN") + GetTableName("254"), "");
        EXPECT_THAT(GetTableNumbers(), IsEmpty());
        EXPECT_TRUE(RouteStore().All().empty());
    });
    EXPECT_THAT(output.err, ::testing::HasSubstr("Can't delete this table, because it is referenced by at "
                                                 "least one policy rule.\n"));
}

TEST_F(RouteStoreTest, SendsChangesAsTheDaemonTakesThem) {
    Answer({{.out = "ip route 10.0.0.0/8 1.1.1.1\nip route table 5 10.0.0.0/8 1.1.1.2\n"}});
    RouteStore store;
    support::ForgetCommands();
    EXPECT_TRUE(store.AddRoute("10.1.0.0", "255.255.0.0", "1.1.1.1", "20", "3", "5"));
    EXPECT_TRUE(store.AddRoute("10.1.0.0", "255.255.0.0", "1.1.1.1", "10", "1", ""));
    EXPECT_TRUE(store.DeleteRoutes("10.0.0.0", "255.0.0.0", "1.1.1.1"));
    EXPECT_TRUE(store.DeleteRoutes("10.0.0.0", "255.0.0.0", "", "5"));
    EXPECT_FALSE(store.DeleteRoutes("11.0.0.0"));
    EXPECT_TRUE(AddTable("VPN", "5"));
    EXPECT_TRUE(DeleteTable("5"));
    const std::string conf = "/usr/bin/vtysh -d zebra -c 'conf t' -c ";
    const std::string done = " -c end -c 'write file'";
    ExpectCommands(
        {conf + "'ip route table 5 10.1.0.0/16 1.1.1.1 20 3'" + done, kAskConfig,
         conf + "'ip route 10.1.0.0/16 1.1.1.1 10 1'" + done, kAskConfig,
         "/usr/bin/vtysh -d zebra -c 'configure terminal' -c 'no ip route 10.0.0.0/8 1.1.1.1'" + done,
         "/usr/bin/vtysh -d zebra -c 'configure terminal' -c 'no ip route table 5 10.0.0.0/8 1.1.1.2'" + done,
         conf + "'table 5 VPN'" + done, "/usr/bin/vtysh -c 'show tables static'", kAskConfig,
         conf + "'no table 5'" + done});
}

TEST_F(RouteStoreTest, RefusedChangesChangeNothing) {
    Answer({{.out = "ip route 10.0.0.0/8 1.1.1.1\n"}, {.status = 1}, {.status = 1}});
    RouteStore store;
    EXPECT_FALSE(store.AddRoute("10.1.0.0", "255.255.0.0", "1.1.1.1", "20", "3", "5"));
    EXPECT_EQ(store.All().size(), 1U);
    EXPECT_TRUE(store.DeleteRoutes("10.0.0.0"));
    EXPECT_THAT(TakeLog(), IsEmpty());
    support::ForgetCommands();
    // What a daemon or a caller gives never becomes a part of a shell line.
    EXPECT_FALSE(store.AddRoute("10.0.0.0", "255.0.0.0", "$(reboot)", "10", "1", ""));
    EXPECT_FALSE(store.AddRoute("10.0.0.0", "255.0.0.0", "1.1.1.1", "10", "1", "5\" -c \"reload"));
    EXPECT_FALSE(AddTable("a;b", "5"));
    ExpectCommands({});
}

// Also when a signal comes while it waits.
TEST_F(RouteStoreTest, SecondCommandWaitsForTheFirst) {
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, nullptr);
    std::atomic<bool> has_lock = false;
    std::thread second;
    {
        const RouteStore store;
        EXPECT_EQ(support::ModeOf("/run/lock/run/quagga/s_routing.lock"), 0400U);
        second = std::thread([&] {
            const RouteStore waiting;
            has_lock = waiting.HasLock();
        });
        for (int i = 0; i < 10; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            pthread_kill(second.native_handle(), SIGUSR1);
        }
        EXPECT_FALSE(has_lock);
    }
    second.join();
    EXPECT_TRUE(has_lock);
}

TEST_F(RouteStoreTest, WithoutItsLockItFindsNothing) {
    Configure({"ip route 10.0.0.0/8 1.1.1.1"});
    EXPECT_EQ(rmdir("/run/lock/run/quagga"), 0);
    RouteStore store;
    EXPECT_FALSE(store.HasLock());
    EXPECT_TRUE(store.FindRoutes("10.0.0.0").empty());
    EXPECT_FALSE(store.DeleteRoutes("10.0.0.0"));
    EXPECT_THAT(FormatRoutesPlain(store, store.All()), IsEmpty());
}

} // namespace
} // namespace routing
