#include "platform/network.h"
#include "platform/path_list.h"
#include "records/address_checks.h"
#include "records/network_crossing.h"
#include "tests/support/appliance.h"

#include <sstream>
#include <tuple>

namespace corvanshell {
namespace {

using support::Capture;
using support::WriteFile;

constexpr const char* kLocal = "/mnt/main/etc/local.conf";

class AddressChecksTest : public support::Appliance {
protected:
    // "<address>/<prefix length>" with its broadcast; a text without a "/" stands in all three places.
    static Network Net(const std::string& text) {
        const std::size_t sign = text.find('/');
        if (sign == std::string::npos)
            return {text, text, text};
        const std::string address = text.substr(0, sign);
        const std::string netmask = cidr_to_subnetmask(text.substr(sign + 1));
        return {address, netmask, getbrcast(address, netmask)};
    }

    // Of interfaces "<name> up|down [<network> [<alias>...]]".
    static CConfStruct Record(const std::vector<std::string>& rows) {
        CConfStruct record("/mnt/none", false);
        for (const std::string& row : rows) {
            std::istringstream words(row);
            std::string name, state, text;
            words >> name >> state >> text;
            InterfaceEntry entry;
            const Network main = Net(text);
            std::tie(entry.up, entry.address, entry.netmask, entry.broadcast) =
                std::make_tuple(state == "up", main.address, main.netmask, main.broadcast);
            while (words >> text) {
                entry.alias_addresses.push_back(Net(text).address);
                entry.alias_netmasks.push_back(Net(text).netmask);
                entry.alias_broadcasts.push_back(Net(text).broadcast);
            }
            record.AddInterface(name, entry, true);
        }
        return record;
    }

    static Crossing Check(decltype(CheckAddressCrossing) check, const CConfStruct& record, const char* name,
                          const char* network) {
        const Network proposed = Net(network);
        return check(record, name, proposed.address, proposed.broadcast, proposed.netmask, true);
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
        const char* proposed;
        const char* other;
        Crossing crossing;
    } cases[] = {
        {"10.0.0.1/8", "eth1 up 10.1.0.1/16", kCrossing},
        {"10.1.0.1/16", "eth1 up 10.0.0.1/8", kCrossing},
        {"10.0.0.1/24", "eth1 up 10.0.1.1/24", kNoCrossing},
        {"10.0.0.1/24", "eth1 up 10.0.0.9/24", kCrossing},
        {"10.0.0.1/24", "eth1 up 10.0.1.0/25", kNoCrossing},
        {"10.0.0.1/24", "eth1 up 10.0.0.0/25", kCrossing},
        {"200.0.0.1/24", "eth1 up 128.0.0.1/1", kCrossing},
        {"10.0.0.1/24", "eth1 up", kNoCrossing},
    };
    for (const auto& row : cases)
        EXPECT_EQ(Check(CheckInterfaceCrossing, Record({row.other}), "eth9", row.proposed), row.crossing)
            << row.proposed << " " << row.other;
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
        {{.out = "inet 10.9.0.7/16 brd 10.9.255.255 scope global eth1\ninet 127.0.0.1/8 scope host\n"},
         kNoCrossing,
         ""},
        {{.out = "inet 10.0.0.7 brd 10.0.255.255 scope\n"},
         kCrossingFailure,
         "eth1: failed to parse application output /bin/ip: cannot find address or netmask\n"},
        {{.out = "inet 10.0.0.7/16 brd  scope global\n"},
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
    CConfStruct record =
        Record({"eth0 up 10.0.0.1/30 10.0.1.1/24 10.0.2.1/32", "eth1 up 10.1.0.1/31", "eth2 up dhcp",
                "eth3 down 10.3.0.1/31", "eth4 up 10.4.0.1/1", "eth5 up 10.5.0.1/0"});
    const std::string rule = "netmask must be in CIDR range from 1 to 30\n";
    EXPECT_EQ(
        Capture([&] { CheckNetmasks(record); }).err,
        "interface eth5 has invalid netmask and going down: 0.0.0.0 please fix it before activating "
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
    CConfStruct record = Record({"eth0 up 10.0.0.1/8", "eth1 up 10.1.0.1/16", "eth2 down 10.2.0.1/16",
                                 "eth3 up 192.168.0.1/24 10.3.0.1/24"});
    EXPECT_EQ(Capture([&] { CheckBroadcasts(record); }).err,
              "broadcast 10.3.0.255 on interface eth3 crossing with eth0\n"
              "broadcast 10.1.255.255 on interface eth1 crossing with eth0\n");
    EXPECT_EQ(UpInterfaces(record), "eth0 ");
    // An interface that is down stops a new address, and not one that is up already.
    EXPECT_EQ(Check(CheckInterfaceCrossing, record, "eth9", "10.2.5.1/24"), kCrossing);
    record.AddInterface("eth0", MakeInterfaceEntry(), true);
    EXPECT_EQ(Check(CheckInterfaceCrossing, record, "eth9", "10.2.5.1/24"), kNoCrossing);
    EXPECT_EQ(Check(CheckAddressCrossing, record, "eth9", "10.2.5.1/24"), kCrossing);
    EXPECT_EQ(Check(CheckAddressCrossing, record, "eth2:1", "10.2.5.1/24"), kNoCrossing);
}

TEST_F(AddressChecksTest, ClusterFileReservesItsNetworks) {
    WriteFile("/etc/failover.ini", "[channel]\ndevice = eth0:1\nactiveip = change_this\n"
                                   "[channel]\ndevice = eth1:1\nactiveip = 10.1.0.9/24\n"
                                   "[channel]\ndevice = eth2\nactiveip = 10.2.0.9\n");
    const char* const unreadable = "eth2: failed to get address from failover.ini\n";
    const struct {
        const char* name;
        const char* network;
        const char* other;
        const char* error;
    } cases[] = {
        {"eth5", "10.1.0.1/24", "eth1:1", ""},         {"eth5", "10.1.0.1/16", "eth1:1", ""},
        {"eth5", "10.7.0.1/16", "eth2", unreadable},   {"eth2", "10.7.0.1/16", "", ""},
        {"eth1:5", "10.1.0.1/24", "eth2", unreadable},
    };
    for (const auto& row : cases) {
        const Network proposed = Net(row.network);
        const auto output = Capture([&] {
            EXPECT_EQ(FindFailoverCrossing(row.name, proposed.address, proposed.broadcast, proposed.netmask),
                      row.other);
        });
        EXPECT_EQ(output.err, row.error);
    }
    // An interface comes up beside a reserved network of one that is down; a new address does not.
    for (const bool up : {false, true}) {
        const CConfStruct record = Record({up ? "eth1 up 1.1.1.1/24" : "eth1 down 1.1.1.1/24"});
        const auto output = Capture([&] {
            EXPECT_EQ(Check(CheckInterfaceCrossing, record, "eth5", "10.1.0.1/24"),
                      up ? kCrossing : kNoCrossing);
            EXPECT_EQ(Check(CheckAddressCrossing, record, "eth5", "10.1.0.1/24"), kCrossing);
        });
        const std::string line =
            "broadcast 10.1.0.255 on interface eth5 crossing with eth1:1 from failover.ini\n";
        EXPECT_EQ(output.err, up ? line + line : line);
    }
    // Without address and netmask it can't be told, but for a network without a netmask.
    WriteFile("/etc/failover.ini", "[channel]\ndevice = eth3\nactiveip = /\n");
    for (const std::string netmask : {"", "255.255.255.0"}) {
        const auto output = Capture([&] {
            EXPECT_EQ(FindFailoverCrossing("eth5", "10.1.0.1", "10.1.0.255", netmask),
                      netmask.empty() ? "" : "eth3");
        });
        EXPECT_EQ(output.err,
                  netmask.empty() ? "" : "eth3: failed to get address or netmask from failover.ini\n");
    }
}

TEST_F(AddressChecksTest, InterfaceComesUpOnlyWithGoodNetworks) {
    const CConfStruct record = Record({"eth0 up 10.0.0.1/24", "eth1 down 10.0.0.2/24",
                                       "eth2 down 10.2.0.1/31", "eth3 down", "eth4 down 10.4.0.1/24"});
    EXPECT_FALSE(CheckInterfaceUp(record, "eth1") || CheckInterfaceUp(record, "eth2"));
    EXPECT_TRUE(CheckInterfaceUp(record, "eth3") && CheckInterfaceUp(record, "eth4"));
    const std::string reserved = "[channel]\ndevice = eth8\nactiveip = 10.8.0.9/24\n";
    // Two addresses of one interface may share a network, those of two may not.
    WriteFile("/etc/failover.ini", reserved + "[channel]\ndevice = eth8:1\nactiveip = 10.8.0.8/24\n");
    EXPECT_TRUE(CheckInterfaceUp(record, "eth3"));
    WriteFile("/etc/failover.ini", reserved + "[channel]\ndevice = eth9\nactiveip = 10.8.0.8/16\n");
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
