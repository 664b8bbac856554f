#include "platform/guards.h"
#include "platform/path_list.h"
#include "records/address_checks.h"
#include "tests/support/appliance.h"

#include <array>

namespace corvanshell {
namespace {

using support::Capture;
using support::WriteFile;

constexpr const char* kLocal = "/mnt/main/etc/local.conf";

class AddressChecksTest : public support::Appliance {
protected:
    // A record of interfaces "<name> <up> <address> <mask> <broadcast>", read back from its file.
    static CConfStruct Record(const std::vector<std::array<std::string, 5>>& interfaces) {
        CConfStruct record("/mnt/none", false);
        for (const auto& [name, up, address, netmask, broadcast] : interfaces) {
            InterfaceEntry entry = MakeInterfaceEntry();
            entry.up = up == "up";
            entry.address = address;
            entry.netmask = netmask;
            entry.broadcast = broadcast;
            record.AddInterface(name, entry, true);
        }
        return record;
    }

    static void AddAlias(CConfStruct& record, const std::string& name, const char* address,
                         const char* netmask, const char* broadcast) {
        InterfaceEntry entry = record.Interfaces().at(name);
        entry.alias_addresses.emplace_back(address);
        entry.alias_netmasks.emplace_back(netmask);
        entry.alias_broadcasts.emplace_back(broadcast);
        record.AddInterface(name, entry, true);
    }

    static std::string UpInterfaces(const CConfStruct& record) {
        std::string names;
        for (const auto& [name, entry] : record.Interfaces())
            names += entry.up ? name + " " : "";
        return names;
    }
};

TEST_F(AddressChecksTest, NetworksCrossWhenTheNarrowerLiesInTheWider) {
    const struct {
        std::array<const char*, 3> proposed; // address, netmask, broadcast
        std::array<const char*, 3> other;
        Crossing crossing;
    } cases[] = {
        {{"10.0.0.1", "255.0.0.0", "10.255.255.255"}, {"10.1.0.1", "255.255.0.0", "10.1.255.255"}, kCrossing},
        {{"10.1.0.1", "255.255.0.0", "10.1.255.255"}, {"10.0.0.1", "255.0.0.0", "10.255.255.255"}, kCrossing},
        {{"10.0.0.1", "255.255.255.0", "10.0.0.255"},
         {"10.0.1.1", "255.255.255.0", "10.0.1.255"},
         kNoCrossing},
        {{"10.0.0.1", "255.255.255.0", "10.0.0.255"},
         {"10.0.0.9", "255.255.255.128", "10.0.0.255"},
         kCrossing},
        {{"10.0.0.1", "255.255.255.0", "10.0.0.255"},
         {"10.0.1.0", "255.255.255.128", "10.0.1.127"},
         kNoCrossing},
        {{"10.0.0.1", "255.255.255.0", "10.0.0.255"},
         {"10.0.0.0", "255.255.255.128", "10.0.0.127"},
         kCrossing},
        {{"200.0.0.1", "255.255.255.0", "200.0.0.255"},
         {"128.0.0.1", "128.0.0.0", "255.255.255.255"},
         kCrossing},
        {{"10.0.0.1", "255.255.255.0", "10.0.0.255"}, {"", "", ""}, kNoCrossing},
    };
    for (const auto& row : cases) {
        InterfaceEntry entry;
        entry.address = row.other[0];
        entry.netmask = row.other[1];
        entry.broadcast = row.other[2];
        EXPECT_EQ(NetworksCross("eth1", entry, row.proposed[0], row.proposed[2], row.proposed[1]),
                  row.crossing)
            << row.proposed[0] << " " << row.other[0];
    }
}

TEST_F(AddressChecksTest, DhcpInterfacesAreAskedOfTheSystem) {
    InterfaceEntry entry;
    entry.address = "dhcp";
    support::Record("/bin/ip");
    const struct {
        support::Answer answer;
        Crossing crossing;
        const char* error;
    } cases[] = {
        {{.out = "1: eth1\n    inet 10.0.0.7/16 brd 10.0.255.255 scope global eth1\n"}, kCrossing, ""},
        {{.out =
              "    inet 10.9.0.7/16 brd 10.9.255.255 scope global eth1\n    inet 127.0.0.1/8 scope host\n"},
         kNoCrossing,
         ""},
        {{.out = "inet 10.0.0.7 brd 10.0.255.255 scope\n"},
         kCrossingFailure,
         "eth1: failed to parse application output /bin/ip: cannot find address or netmask\n"},
        {{.out = "inet 10.0.0.7/16 brd  scope global\n"},
         kCrossingFailure,
         "eth1: failed to parse application output /bin/ip: one or more parameters are missing\n"},
        {{.out = "inet 10.0.0.7/99 brd "},
         kCrossingFailure,
         "eth1: failed to parse application output /bin/ip: one or more parameters are missing\n"},
        {{.status = 1}, kCrossingFailure, "eth1: failed to get interface address: exit status 1\n"},
    };
    for (const auto& row : cases) {
        support::Queue("/bin/ip", row.answer);
        const auto output = Capture([&] {
            EXPECT_EQ(NetworksCross("eth1:0", entry, "10.0.5.1", "10.0.5.255", "255.255.255.0"), row.crossing)
                << row.answer.out;
        });
        EXPECT_EQ(output.err, row.error);
    }
    EXPECT_EQ(NetworksCross("cdc-modem0", entry, "10.0.5.1", "10.0.5.255", "255.255.255.0"), kNoCrossing);
    support::ExpectCommands(std::vector<std::string>(std::size(cases), "/bin/ip addr show eth1"));
}

TEST_F(AddressChecksTest, BadNetmasksTakeInterfacesDown) {
    CConfStruct record = Record({{"eth0", "up", "10.0.0.1", "255.255.255.252", "10.0.0.3"},
                                 {"eth1", "up", "10.1.0.1", "255.255.255.254", "10.1.0.1"},
                                 {"eth2", "up", "dhcp", "dhcp", "dhcp"},
                                 {"eth3", "down", "10.3.0.1", "0.0.0.0", ""},
                                 {"eth4", "up", "10.4.0.1", "128.0.0.0", "127.255.255.255"},
                                 {"eth5", "up", "10.5.0.1", "255.0.255.0", ""}});
    AddAlias(record, "eth0", "10.0.1.1", "255.255.255.0", "10.0.1.255");
    AddAlias(record, "eth0", "10.0.2.1", "255.255.255.255", "10.0.2.1");
    const std::string rule = "netmask must be in CIDR range from 1 to 30\n";
    EXPECT_EQ(
        Capture([&] { CheckNetmasks(record); }).err,
        "interface eth5 has invalid netmask and going down: 255.0.255.0 please fix it before activating "
        "this one\n" +
            rule +
            "interface eth1 has invalid netmask and going down: 255.255.255.254 please fix it before "
            "activating this one\n" +
            rule +
            "alias eth0:1 on interface eth0 has invalid netmask and going down:\n255.255.255.255 please fix "
            "it before activating this one\n" +
            rule);
    EXPECT_EQ(UpInterfaces(record), "eth2 eth4 ");
}

TEST_F(AddressChecksTest, CrossingInterfacesGoDownFromTheLastName) {
    CConfStruct record = Record({{"eth0", "up", "10.0.0.1", "255.0.0.0", "10.255.255.255"},
                                 {"eth1", "up", "10.1.0.1", "255.255.0.0", "10.1.255.255"},
                                 {"eth2", "down", "10.2.0.1", "255.255.0.0", "10.2.255.255"},
                                 {"eth3", "up", "192.168.0.1", "255.255.255.0", "192.168.0.255"}});
    AddAlias(record, "eth3", "10.3.0.1", "255.255.255.0", "10.3.0.255");
    EXPECT_EQ(Capture([&] { CheckBroadcasts(record); }).err,
              "broadcast 10.3.0.255 on interface eth3 crossing with eth0\n"
              "broadcast 10.1.255.255 on interface eth1 crossing with eth0\n");
    EXPECT_EQ(UpInterfaces(record), "eth0 ");
    // An interface that is down stops a new address, and not one that is up already.
    EXPECT_EQ(CheckInterfaceCrossing(record, "eth9", "10.2.5.1", "10.2.5.255", "255.255.255.0", true),
              kCrossing);
    record.AddInterface("eth0", MakeInterfaceEntry(), true);
    EXPECT_EQ(CheckInterfaceCrossing(record, "eth9", "10.2.5.1", "10.2.5.255", "255.255.255.0", true),
              kNoCrossing);
    EXPECT_EQ(CheckAddressCrossing(record, "eth9", "10.2.5.1", "10.2.5.255", "255.255.255.0", true),
              kCrossing);
    EXPECT_EQ(CheckAddressCrossing(record, "eth2:1", "10.2.5.1", "10.2.5.255", "255.255.255.0", true),
              kNoCrossing);
}

TEST_F(AddressChecksTest, ClusterFileReservesItsNetworks) {
    WriteFile("/etc/failover.ini", "[channel]\ndevice = eth0:1\nactiveip = change_this\n"
                                   "[channel]\ndevice = eth1:1\nactiveip = 10.1.0.9/24\n"
                                   "[channel]\ndevice = eth2\nactiveip = 10.2.0.9\n");
    CConfStruct record = Record({{"eth1", "down", "1.1.1.1", "255.255.255.0", "1.1.1.255"}});
    const struct {
        const char* name;
        const char* address;
        const char* broadcast;
        const char* netmask;
        const char* other;
        const char* error;
    } cases[] = {
        {"eth5", "10.1.0.1", "10.1.0.255", "255.255.255.0", "eth1:1", ""},
        {"eth5", "10.1.0.1", "10.1.255.255", "255.255.0.0", "eth1:1", ""},
        {"eth5", "10.7.0.1", "10.7.255.255", "255.255.0.0", "eth2",
         "eth2: failed to get address from failover.ini\n"},
        {"eth2", "10.7.0.1", "10.7.255.255", "255.255.0.0", "", ""},
        {"eth1:5", "10.1.0.1", "10.1.0.255", "255.255.255.0", "eth2",
         "eth2: failed to get address from failover.ini\n"},
    };
    for (const auto& row : cases) {
        const auto output = Capture([&] {
            EXPECT_EQ(FindFailoverCrossing(row.name, row.address, row.broadcast, row.netmask), row.other);
        });
        EXPECT_EQ(output.err, row.error);
    }
    EXPECT_EQ(Capture([&] {
                  EXPECT_EQ(
                      CheckAddressCrossing(record, "eth5", "10.1.0.1", "10.1.0.255", "255.255.255.0", true),
                      kCrossing);
              }).err,
              "broadcast 10.1.0.255 on interface eth5 crossing with eth1:1 from failover.ini\n");
    // Interfaces that are down don't count when one comes up.
    EXPECT_EQ(CheckInterfaceCrossing(record, "eth5", "10.1.0.1", "10.1.0.255", "255.255.255.0", true),
              kNoCrossing);
}

TEST_F(AddressChecksTest, InterfaceComesUpOnlyWithGoodNetworks) {
    CConfStruct record = Record({{"eth0", "up", "10.0.0.1", "255.255.255.0", "10.0.0.255"},
                                 {"eth1", "down", "10.0.0.2", "255.255.255.0", "10.0.0.255"},
                                 {"eth2", "down", "10.2.0.1", "255.255.255.254", ""},
                                 {"eth3", "down", "", "", ""},
                                 {"eth4", "down", "10.4.0.1", "255.255.255.0", "10.4.0.255"}});
    EXPECT_FALSE(CheckInterfaceUp(record, "eth1") || CheckInterfaceUp(record, "eth2"));
    EXPECT_TRUE(CheckInterfaceUp(record, "eth3") && CheckInterfaceUp(record, "eth4"));
    WriteFile("/etc/failover.ini", "[channel]\ndevice = eth8\nactiveip = 10.8.0.9/24\n"
                                   "[channel]\ndevice = eth9\nactiveip = 10.8.0.8/16\n");
    EXPECT_EQ(Capture([&] { EXPECT_FALSE(CheckInterfaceUp(record, "eth3")); }).err,
              "failed to check broadcasts crossing: interfaces configured in failover.ini have crossing "
              "networks\n");
}

TEST_F(AddressChecksTest, GenerateAddsWhatIsMissingOnce) {
    WriteFile(kLocal, "HOSTNAME\tgate\nETH0_UP 1\nETH0_IP 10.0.0.1\nETH0_MASK 255.255.255.255\nETH1_UP 1\n"
                      "ETH1_IP 10.1.0.1\nETH1_MASK 255.255.255.0\nETH1_BROADCAST 10.1.0.255\n");
    ASSERT_EQ(support::ConfTool({"-p"}).status, 0);
    const support::Result first = support::ConfTool({"-g"});
    EXPECT_EQ(first.status, 0);
    EXPECT_EQ(first.err.substr(0, 44), "interface eth0 has invalid netmask and going");
    const CConfStruct record(kLocal, true);
    EXPECT_EQ(record.HostName(), "gate");
    EXPECT_EQ(UpInterfaces(record), "eth1 ");
    EXPECT_EQ(record.Interfaces().size(), 3U);
    const InterfaceEntry& modem = record.Interfaces().at("cdc-modem0");
    EXPECT_TRUE(modem.address == "dhcp" && modem.netmask == "dhcp" && modem.broadcast == "dhcp" &&
                modem.dhcp_route && modem.dhcp_dns && modem.dhcp_ntp);
    const std::string local = support::ReadFile(kLocal);
    const std::string common = support::ReadFile(path_list::common_settings);
    EXPECT_EQ(support::ConfTool({"--generate", "operand"}).status, 1); // generated all the same
    EXPECT_EQ(support::ReadFile(kLocal), local);
    EXPECT_EQ(support::ReadFile(path_list::common_settings), common);
    EXPECT_EQ(support::RunShell("sha256sum -c /mnt/main/etc/settings.crg").status, 0);
}

} // namespace
} // namespace corvanshell
