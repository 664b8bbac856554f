#include "tests/units/dhcp_server/server_fixture.h"
#include "units/dhcp_server/interface_change.h"
#include "units/dhcp_server/subnets.h"

#include <gmock/gmock.h>

namespace settings::dhcp_server {
namespace {

using support::Capture;
using support::ConfTool;
using support::ReadFile;
using ::testing::HasSubstr;

class DhcpServerInterfaceTest : public ServerAppliance {};

TEST_F(DhcpServerInterfaceTest, UpdateFollowsTheInterface) {
    WriteSettings(Subnet1("<option name='subnet-mask' auto='yes'>255.255.255.0</option>"
                          "<option name='broadcast-address' auto='yes'>192.168.1.255</option>"
                          "<option name='ntp-servers' auto='yes'><address>192.168.1.1</address></option>"
                          "<option name='domain-name-servers'><address>9.9.9.9</address></option>"));
    WriteRecord(kLocal, Interface("ETH1", "10.5.5.5"));
    WriteRecord(kCommon, "DNS on\nNTP off\n");
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?update=eth1"}).status, 0);
    support::ExpectGolden(kSettings, "units/dhcp_server/updated.xml");
    WriteRecord(kCommon, "NTP on\n");
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?update=eth1"}).status, 0);
    EXPECT_THAT(ReadFile(kSettings),
                HasSubstr("name=\"ntp-servers\" auto=\"yes\">\n      <address>10.5.5.5<"));

    // Only "yes" is the program's.
    WriteSettings(Subnet2("") + Subnet1("<option name='subnet-mask' auto='no'>255.255.255.128</option>"));
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?update=eth1"}).status, 0);
    EXPECT_THAT(ReadFile(kSettings), HasSubstr(">255.255.255.128<"));

    const auto before = support::TakeSnapshot();
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?update=eth9"}).status, 0); // not the server's
    support::ExpectUnchanged(before);
    WriteRecord(kLocal, Interface("ETH1", "10.5.5.5", false));
    const std::string settings = ReadFile(kSettings);
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?update=eth1"}).err,
              "DHCP server: eth1: listen interface is down\n");
    EXPECT_EQ(ReadFile(kSettings), settings);
}

TEST_F(DhcpServerInterfaceTest, InterfaceChangesAreErrorsOrWarnings) {
    WriteSettings(Subnet1("<range from='192.168.1.10' to='192.168.1.20'/>"));
    const struct {
        bool going_down;
        const char* new_class;
        const char* address;
        const char* netmask;
        bool allowed;          // whatever the autostart
        const char* autostart; // the text with autostart on
        const char* manual;
    } cases[] = {
        {false, "access", "0.0.0.0", "0.0.0.0", true, "", ""},
        {false, "access", "192.168.1.9", "255.255.255.128", true, "", ""},
        {true, "access", "0.0.0.0", "0.0.0.0", false,
         "DHCP server: interface eth1 can not go DOWN since DHCP server autostart is on\n",
         "DHCP server: interface eth1 going DOWN but it is present in DHCP server configuration\n"},
        {false, "trunk", "0.0.0.0", "0.0.0.0", false,
         "DHCP server: interface eth1 can not set trunk class since DHCP server autostart is on\n",
         "DHCP server: interface eth1 can set trunk class but it is present in DHCP server configuration\n"},
        {false, "access", "192.168.1.15", "0.0.0.0", false,
         "DHCP server: eth1: address of interface address is in the dynamic address range [192.168.1.10 - "
         "192.168.1.20]: 192.168.1.15\n",
         "DHCP server: eth1: address of interface address is in the dynamic address range [192.168.1.10 - "
         "192.168.1.20]: 192.168.1.15\n"
         "DHCP server: above error(s) should be treated as warnings since DHCP server autostart is off\n"},
        {false, "access", "8.8.8.8", "255.0.0.0", false,
         "DHCP server: eth1: use of 8.8.8.8 interface address on local area network is unsafe\n"
         "DHCP server: eth1: incorrect subnet mask scope: 255.0.0.0\n",
         "DHCP server: eth1: use of 8.8.8.8 interface address on local area network is unsafe\n"
         "DHCP server: eth1: incorrect subnet mask scope: 255.0.0.0\n"
         "DHCP server: above error(s) should be treated as warnings since DHCP server autostart is off\n"},
    };
    for (const bool autostart : {true, false}) {
        WriteRecord(kCommon, autostart ? "DHCP_SERVER on\n" : "DHCP_SERVER off\n");
        for (const auto& row : cases) {
            const auto output = Capture([&] {
                EXPECT_EQ(CheckDhcpServerInterfaceChange("eth1", row.going_down, row.new_class, row.address,
                                                         row.netmask),
                          row.allowed || !autostart);
            });
            EXPECT_EQ(output.err, autostart ? row.autostart : row.manual);
            EXPECT_EQ(TakeLog().back(), (support::LogLine{6, std::string("DHCP server autostart is ") +
                                                                 (autostart ? "on " : "off ")}));
        }
    }
    // An interface that can't serve is a fault of its own, which counts when the server starts by itself.
    WriteRecord(kLocal, Interface("ETH1", "192.168.1.1", false));
    for (const bool autostart : {true, false}) {
        WriteRecord(kCommon, autostart ? "DHCP_SERVER on\n" : "DHCP_SERVER off\n");
        const auto output = Capture([&] {
            EXPECT_EQ(CheckDhcpServerInterfaceChange("eth1", false, "access", "192.168.1.15", "0.0.0.0"),
                      !autostart);
        });
        EXPECT_EQ(output.err, "DHCP server: eth1: listen interface is down\n");
    }
    EXPECT_TRUE(CheckDhcpServerInterfaceChange("eth2", true, "trunk", "", ""));
    support::WriteFile("/run/dhcp-server.pid", std::to_string(getpid()));
    EXPECT_EQ(Capture([] {
                  EXPECT_FALSE(CheckDhcpServerInterfaceChange("eth1", false, "access", "0.0.0.0", "0.0.0.0"));
              }).err,
              "DHCP server is running and the interface eth1 is in use\n");
}

} // namespace
} // namespace settings::dhcp_server
