#include "tests/units/dhcp_server/server_fixture.h"
#include "units/dhcp_server/hosts.h"
#include "units/dhcp_server/reset.h"
#include "units/dhcp_server/subnets.h"

namespace settings::dhcp_server {
namespace {

using support::Capture;
using support::ReadFile;

class DhcpServerRemovalTest : public ServerAppliance {
protected:
    const LocalSubnet eth1{"eth1"};
};

TEST_F(DhcpServerRemovalTest, ErasingShowsAndAsksOnlyAtATerminal) {
    const std::string settings = Subnet1(Host("pc7", "192.168.1.7"));
    WriteSettings(settings);
    const auto output = Capture([&] { EXPECT_TRUE(EraseHost(settings::dhcp_server::Host("pc7"))); });
    EXPECT_EQ(output.out, "host pc7\n  hardware = 02:00:00:00:00:01, fixed-address = 192.168.1.7\n");
    EXPECT_EQ(Capture([&] { EXPECT_TRUE(EraseLocalSubnet(eth1)); }).out, "interface = eth1\n");
    EXPECT_EQ(ReadFile(kSettings),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<unit name=\"dhcp-server\"/>\n");
    const std::string question = "Host with these settings will be removed completely, are you sure? [y/N] ";
    const settings::dhcp_server::Host pc7("pc7");
    // Whether the host is there is asked behind the question.
    const auto unknown = AtTerminal("n\n", [&] { EXPECT_FALSE(EraseHost(pc7)); });
    EXPECT_EQ(unknown, (support::Output{question, ""}));
    WriteSettings(settings);
    const auto before = support::TakeSnapshot();
    EXPECT_EQ(AtTerminal("n\n", [&] { EXPECT_FALSE(EraseHost(pc7)); }).out, output.out + question);
    EXPECT_EQ(AtTerminal("n\n", [&] { EXPECT_FALSE(EraseLocalSubnet(eth1)); }).out,
              "interface = eth1\n" + output.out +
                  "Subnet with these settings will be removed completely, are you sure? [y/N] ");
    support::ExpectUnchanged(before);
    static_cast<void>(AtTerminal("y\n", [&] { EXPECT_TRUE(EraseHost(pc7)); }));
    EXPECT_EQ(ReadFile(kSettings).find("pc7"), std::string::npos);
}

TEST_F(DhcpServerRemovalTest, ResetGoesOnThroughFailures) {
    WriteSettings(Subnet1(""));
    support::WriteFile(kConf, "old");
    support::WriteFile("/var/lib/dhcp/dhcpd.leases", "lease");
    ASSERT_EQ(
        support::RunShell("rm -f /etc/default/isc-dhcp-server; mkdir -p /etc/default/isc-dhcp-server").status,
        0);
    const std::string failed_extra =
        "DHCP server: /etc/default/isc-dhcp-server: failed to remove daemon listening interfaces file: "
        "Is a directory\n";
    const auto output = Capture([] { EXPECT_FALSE(ResetDhcpServerSettings()); });
    EXPECT_EQ(output.err, failed_extra);
    EXPECT_FALSE(support::Exists(kConf));
    EXPECT_EQ(ReadFile("/var/lib/dhcp/dhcpd.leases"), "");
    EXPECT_EQ(ReadFile(kSettings), "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<unit name=\"dhcp-server\">\n"
                                   "  <default-lease-time>864000</default-lease-time>\n  "
                                   "<max-lease-time>864000</max-lease-time>\n</unit>\n");
    // Settings that can't be removed get no new ones; the rest goes all the same.
    support::WriteFile(kConf, "old");
    ASSERT_EQ(support::RunShell(std::string("rm ") + kSettings + "; mkdir " + kSettings).status, 0);
    EXPECT_EQ(Capture([] { EXPECT_FALSE(ResetDhcpServerSettings()); }).err,
              "DHCP server: " + std::string(kSettings) +
                  ": failed to remove settings file: Is a directory\n" + failed_extra);
    EXPECT_FALSE(support::Exists(kConf));
}

} // namespace
} // namespace settings::dhcp_server
