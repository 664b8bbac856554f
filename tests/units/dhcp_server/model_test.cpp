#include "tests/units/dhcp_server/server_fixture.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/model/addresses.h"
#include "units/dhcp_server/model/gates.h"
#include "units/dhcp_server/model/options.h"

#include <sys/wait.h>
#include <unistd.h>

namespace settings::dhcp_server {
namespace {

using support::Capture;

class DhcpServerModelTest : public ServerAppliance {
protected:
    DhcpServerModelTest() : file("dhcp-server", "") {}

    void Load(const std::string& text) {
        WriteSettings(text);
        ASSERT_TRUE(file.Load());
    }

    File file;
};

TEST_F(DhcpServerModelTest, AddressesAreNumbersInHostOrder) {
    const std::pair<const char*, std::int64_t> cases[] = {
        {"0.0.0.0", 0},          {"255.255.255.255", 4294967295},
        {"10.0.0.1", 167772161}, {"", -1},
        {"10.0.0", -1},          {"10.0.0.256", -1},
        {"10.0.0.1 ", -1},       {"::1", -1},
        {"10.0.0.1\n", -1},
    };
    for (const auto& [text, value] : cases) {
        EXPECT_EQ(ParseAddressQuiet(text), value) << text;
        EXPECT_EQ(FormatAddress(value), value >= 0 ? text : "");
    }
    EXPECT_EQ(FormatAddress(4294967296), "");
    EXPECT_EQ(Capture([] { ParseAddress("x", "eth1", "router"); }).err,
              "DHCP server: eth1: incorrect address format of router: x\n");
}

TEST_F(DhcpServerModelTest, AreasFindTheirPlaceAndNameItWhenItIsMissing) {
    Load(
        Subnet1(Host("pc7", "192.168.1.7")) +
        "<subnet address='10.9.0.0' netmask='255.255.0.0'><interface type='relay'>eth1</interface></subnet>");
    EXPECT_EQ(LocalSubnet("eth1").GetNode(file).GetAttr("address"), "192.168.1.0");
    EXPECT_EQ(RemoteSubnet("10.9.0.0", "255.255.0.0").GetNode(file).GetAttr("address"), "10.9.0.0");
    EXPECT_EQ(FirstIn(settings::dhcp_server::Host("pc7"), file, "address").GetText(), "192.168.1.7");
    const auto error = [&](const Area& area) {
        return Capture([&] { EXPECT_FALSE(area.GetNode(file)); }).err;
    };
    EXPECT_EQ(error(LocalSubnet("eth2")), "DHCP server: eth2: listen interface is not in use\n");
    EXPECT_EQ(error(RemoteSubnet("192.168.1.0", "255.255.255.0")),
              "DHCP server: 192.168.1.0/255.255.255.0: no such remote subnet\n");
    // A quote can't widen the question.
    EXPECT_EQ(error(settings::dhcp_server::Host("x' or '1' = '1")),
              "DHCP server: x' or '1' = '1: no such host\n");
    support::WriteFile(kSettings, "<other/>");
    ASSERT_TRUE(file.Load());
    EXPECT_EQ(error(Area()), "DHCP server: :: corrupted settings file\n");
}

TEST_F(DhcpServerModelTest, ScopeIsStrictlyInsideTheSubnet) {
    Load(Subnet1("<option name='subnet-mask'>255.255.255.128</option>" +
                 Host("pc7", "192.168.1.7", "<option name='subnet-mask'>255.255.255.192</option>") +
                 Host("pc8", "192.168.1.8")));
    const LocalSubnet subnet("eth1");
    const settings::dhcp_server::Host narrow("pc7");
    const settings::dhcp_server::Host heir("pc8");
    const struct {
        const Area& area;
        const char* address;
        bool inside;
    } cases[] = {
        {subnet, "192.168.1.0", false},   {subnet, "192.168.1.1", true},  {subnet, "192.168.1.126", true},
        {subnet, "192.168.1.127", false}, {narrow, "192.168.1.62", true}, {narrow, "192.168.1.63", false},
        {heir, "192.168.1.126", true},    {heir, "192.168.1.127", false},
    };
    for (const auto& row : cases) {
        const auto output = Capture([&] {
            EXPECT_EQ(CheckAddressScope(row.area, file, "router", row.address), row.inside) << row.address;
        });
        EXPECT_EQ(output.err, row.inside ? ""
                                         : "DHCP server: " + row.area.Name() +
                                               ": incorrect address scope of router: " + row.address + "\n");
    }
}

TEST_F(DhcpServerModelTest, AddressesAreFreeOrInUse) {
    Load(Subnet1("<range from='192.168.1.100' to='192.168.1.110'/>" + Host("a", "192.168.1.7") +
                 Host("b", "bad") + Host("c", "192.168.1.9")));
    const LocalSubnet subnet("eth1");
    const settings::dhcp_server::Host host("c");
    const std::vector<Range> ranges = ReadRanges(SelectIn(subnet, file, "range[@from and @to]"));
    HostAddresses hosts;
    hosts.Add(SelectIn(subnet, file, "host/address"));
    const struct {
        const char* value;
        bool in_range; // asks the ranges, the hosts otherwise
        bool must_be_inside;
        bool passes;
        std::string error;
    } cases[] = {
        {"192.168.1.105", true, true, true, ""},
        {"192.168.1.110", true, false, false,
         "address of DNS is in the dynamic address range [192.168.1.100 - 192.168.1.110]: 192.168.1.110\n"},
        {"192.168.1.111", true, true, false,
         "address of DNS is out of the dynamic address range: 192.168.1.111\n"},
        {"192.168.1.111", true, false, true, ""},
        {"192.168.1.7", false, true, true, ""},
        {"192.168.1.7", false, false, false, "address of DNS is in use within host a: 192.168.1.7\n"},
        {"192.168.1.9", false, false, false, "incorrect address format of host address: bad\n"},
        {"nonsense", false, true, false, "incorrect address format of DNS: nonsense\n"},
    };
    for (const auto& row : cases) {
        const auto output = Capture([&] {
            EXPECT_EQ(row.in_range
                          ? CheckDynamicRangeUse(subnet, ranges, row.must_be_inside, "DNS", row.value)
                          : CheckHostAddressUse(subnet, hosts, row.must_be_inside, "DNS", row.value),
                      row.passes);
        });
        EXPECT_EQ(output.err, row.error.empty() ? "" : "DHCP server: eth1: " + row.error);
    }
    EXPECT_EQ(Capture([&] {
                  EXPECT_FALSE(CheckHostAddressUse(host, HostAddresses(), true, "DNS", "192.168.1.9"));
              }).err,
              "DHCP server: c: address of DNS is out of the hosts address range: 192.168.1.9\n");
    // A host asks its subnet.
    EXPECT_EQ(
        Capture([&] { EXPECT_FALSE(CheckAddressFree(host, file, false, "DNS", "192.168.1.100")); }).err,
        "DHCP server: c: address of DNS is in the dynamic address range [192.168.1.100 - 192.168.1.110]: "
        "192.168.1.100\n");
}

TEST_F(DhcpServerModelTest, PublicAddressesAreWarnedOf) {
    const Area area;
    for (const char* address : {"10.0.0.0", "172.31.255.255", "192.168.255.255"})
        EXPECT_EQ(Capture([&] { WarnIfNotPrivate(area, address, "router"); }).err, "") << address;
    for (const char* address : {"8.8.8.8", "172.32.0.1", "9.255.255.255"})
        EXPECT_EQ(Capture([&] { WarnIfNotPrivate(area, address, "router"); }).err,
                  "DHCP server: :: use of " + std::string(address) +
                      " router on local area network is unsafe\n");
}

TEST_F(DhcpServerModelTest, OperatorsOptionReplacesAManagedOne) {
    Load(Subnet1("<option name='routers' auto='yes'><address>192.168.1.1</address></option>"
                 "<option name='subnet-mask' auto='no'>255.255.255.0</option>"));
    const LocalSubnet subnet("eth1");
    const Node mask = FindOrCreateOption(subnet, file, "subnet-mask", nullptr);
    EXPECT_EQ(mask.GetText(), "255.255.255.0"); // only "yes" is the program's
    const Node routers = FindOrCreateOption(subnet, file, "routers", nullptr);
    EXPECT_TRUE(routers && routers.GetAttr("auto").empty() && !routers.FirstChild());
    EXPECT_EQ(SelectIn(subnet, file, "option[@name = 'routers']").Size(), 1U);
}

TEST_F(DhcpServerModelTest, GatesAndLists) {
    WriteSettings(Subnet1(Host("b", "192.168.1.7") + Host("a", "192.168.1.8") + Host("b", "192.168.1.7")));
    EXPECT_EQ(ListHostNames(), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(ListHostAddresses(), (std::vector<std::string>{"192.168.1.7", "192.168.1.8"}));
    EXPECT_EQ(ListHostMacs().size() + ListListenInterfaces().size() + ListInterfaces().size(), 3U);
    EXPECT_TRUE(ListRelayInterfaces().empty() && ListRemoteSubnets().empty());
    EXPECT_TRUE(IsDhcpServerListenInterface("eth1"));
    EXPECT_FALSE(IsDhcpServerListenInterface("eth2"));
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    ASSERT_EQ(waitpid(ended, nullptr, 0), ended);
    support::WriteFile("/run/dhcp-server.pid", std::to_string(ended));
    EXPECT_TRUE(OpenForChange(file));
    support::WriteFile("/run/dhcp-server.pid", std::to_string(getpid()));
    EXPECT_EQ(Capture([&] { EXPECT_FALSE(OpenForChange(file)); }).err,
              "DHCP server: prohibited to change configuration while daemon is running\n");
    support::WriteFile("/mnt/main/etc/sk_nums", "FO_PARAMS=\"cluster\"\n");
    EXPECT_EQ(Capture([&] { EXPECT_FALSE(OpenForChange(file)); }).err,
              "DHCP server management is disabled because the cluster appliance is passive.\n");
}

} // namespace
} // namespace settings::dhcp_server
