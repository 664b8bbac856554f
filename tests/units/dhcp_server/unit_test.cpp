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

class DhcpServerUnitTest : public ServerAppliance {
protected:
    // The daemon takes the file without a word but the one that its blocks deserve.
    static void ExpectAccepted() {
        const support::Result result = support::RunProgram({"dhcpd", "-4", "-t", "-cf", kConf});
        EXPECT_EQ(result.status, 0) << result.err;
        std::string rest = result.err;
        const std::string known = "WARNING: Host declarations are global.";
        if (const std::size_t place = rest.find(known); place != std::string::npos)
            rest.erase(place, known.size());
        EXPECT_THAT(rest, ::testing::Not(HasSubstr("WARNING")));
    }

    // What a check says; it changes nothing on disk.
    static std::string Faults(const std::string& settings) {
        WriteSettings(settings);
        const auto before = support::TakeSnapshot();
        const support::Result result = ConfTool({"-a", "dhcp-server?check"});
        support::ExpectUnchanged(before);
        EXPECT_EQ(result.status, result.err.empty() ? 0 : 1);
        return result.err;
    }
};

TEST_F(DhcpServerUnitTest, SampleGivesTheDaemonsFiles) {
    const std::string golden = std::string(SAMPLES) + "/mnt/main/etc";
    WriteRecord(kLocal, ReadFile(golden + "/local.conf"));
    support::WriteFile(kSettings, ReadFile(golden + "/settings/dhcp-server.xml"));
    const support::Result result = ConfTool({"-a", "dhcp-server"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
    support::ExpectGolden(kConf, "units/dhcp_server/sample.dhcpd.conf");
    EXPECT_EQ(ReadFile(kExtra), "INTERFACESv4=\"eth1 eth2\"\nDHCPDv4_PID=\"/run/dhcp-server.pid\"\n");
    ExpectAccepted();
}

TEST_F(DhcpServerUnitTest, DuplicateNamesAreWrittenAsTheirExpressionsFind) {
    const std::string subnet =
        Subnet1(Host("pc", "192.168.1.7", "<max-lease-time>1</max-lease-time>") +
                Host("pc", "192.168.1.8", "<max-lease-time>2</max-lease-time>") +
                Host("it&apos;s", "192.168.1.9", "<max-lease-time>3</max-lease-time>"));
    WriteSettings(subnet + subnet);
    const support::Result result = ConfTool({"-a", "dhcp-server"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "DHCP server: eth1: a second subnet of this interface\n");
    support::ExpectGolden(kConf, "units/dhcp_server/duplicates.dhcpd.conf");
    const std::string network = Remote("10.20.0.0", "eth1");
    WriteSettings(Subnet1("") + Subnet2("") + network + Remote("10.30.0.0", "eth1") + network + network);
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?check"}).err,
              "DHCP server: 10.20.0.0/255.255.0.0: a second subnet of network 10.20.0.0/255.255.0.0\n");
}

TEST_F(DhcpServerUnitTest, NoSubnetLeavesTheExtraSettings) {
    support::WriteFile(kExtra, "old");
    WriteSettings("<max-lease-time>5</max-lease-time>");
    EXPECT_EQ(ConfTool({"-a", "dhcp-server"}).err, "DHCP server: no subnets are configured\n");
    EXPECT_EQ(ReadFile(kExtra), "old");
}

TEST_F(DhcpServerUnitTest, CheckReportsEveryFault) {
    const std::string mask = "<option name='subnet-mask'>255.255.255.0</option>";
    const struct {
        std::string settings;
        std::string faults; // each behind "DHCP server: "
    } cases[] = {
        {Subnet1(mask), ""},
        // An option without a type is no custom one, and a subnet's first interface counts.
        {Subnet1("<option num='202'>x</option><interface type='relay'>eth9</interface>"), ""},
        {Subnet1("<option num='200' type='ip'>10.0.0.1</option><option num='200' type='hex'>01</option>"
                 "<option num='201' type='odd'>x</option>"),
         "custom option 200 has different types across settings: ip and hex\n"
         "unknown type of custom option 201: odd\n"},
        {Subnet1(
             "<range from='192.168.1.10' to='192.168.1.20'/><range from='192.168.1.20' to='192.168.1.30'/>"
             "<range from='192.168.1.50' to='192.168.1.40'/>"),
         "eth1: range [192.168.1.10 - 192.168.1.20] intersects with range [192.168.1.20 - 192.168.1.30]\n"
         "eth1: range [192.168.1.50 - 192.168.1.40] is invalid\n"
         "eth1: range [192.168.1.50 - 192.168.1.40] is invalid\n"
         "eth1: range [192.168.1.50 - 192.168.1.40] is invalid\n"},
        {Subnet1(mask +
                 "<range from='192.168.1.10' to='192.168.1.20'/><option name='routers'>"
                 "<address>192.168.1.15</address><address>10.0.0.1</address></option>" +
                 Host("pc", "192.168.2.9")),
         "eth1: incorrect address scope of router: 10.0.0.1\n"
         "eth1: address of router is in the dynamic address range [192.168.1.10 - 192.168.1.20]: "
         "192.168.1.15\n"
         "eth1: incorrect address scope of pc: 192.168.2.9\n"},
        {Subnet1(Host("pc", "192.168.1.9", "<option name='routers'><address>192.168.1.9</address></option>")),
         "pc: address of router is in use within host pc: 192.168.1.9\n"},
        {Subnet1("<option name='broadcast-address'>192.168.1.254</option>"
                 "<option name='subnet-mask'>255.255.0.0</option>"),
         "eth1: incorrect broadcast address: 192.168.1.254\neth1: incorrect subnet mask scope: "
         "255.255.0.0\n"},
        {"<subnet address='1.2.3' netmask='x'><interface type='relay'>eth2</interface></subnet>" +
             Subnet1("<range from='192.168.1.1' to='192.168.1.2'/>"),
         "1.2.3/x: relay interface does not correspond to any listen interface\n"
         ":: incorrect address format of subnet address: 1.2.3\n"
         ":: incorrect address format of subnet netmask: x\n"
         "eth1: address 192.168.1.1 of the listen interface is in the dynamic address range [192.168.1.1 - "
         "192.168.1.2]\n"},
        {"<subnet address='10.0.0.0' netmask='255.0.0.0'><interface type='listen' address='10.200.0.1'>eth1"
         "</interface><range from='10.1.0.0' to='10.1.255.255'/><range from='10.3.0.0' to='10.4.0.0'/>"
         "<range from='x' to='11.0.0.1'/></subnet>",
         "eth1: incorrect address format of lower bound of the range: x\n"
         "eth1: range [10.3.0.0 - 10.4.0.0] exceeds range addresses limit: 65536\n"
         "eth1: incorrect address format of lower bound of the range: x\n"
         "eth1: incorrect address scope of upper bound of the range: 11.0.0.1\n"},
        {"<subnet/>", "listen interface is incorrect\n"
                      "/: relay interface does not correspond to any listen interface\n"
                      ":: incorrect address format of subnet address: \n"
                      ":: incorrect address format of subnet netmask: \n"},
        {"<subnet address='10.0.0.0 {}' netmask='255.0.0.0'><interface "
         "type='listen'>eth9</interface></subnet>",
         "eth9: unconfigured listen interface is unsupported\n"
         ":: incorrect address format of subnet address: 10.0.0.0 {}\n"
         "subnet: the value would be more than a value to the daemon\n"},
        // Texts that would be statements of their own, or two values; of a shell in the last two.
        {Subnet1(
             "<option name='domain-name'>a\"; deny unknown-clients; #</option><option num='200' type='ascii'>"
             "\\</option><option name='log-servers'>10.0.0.1\n}</option><option num='200' type='ascii'>"
             "a\" \"b</option><option name='tftp-server' file='a\"b'>10.0.0.5</option>" +
             Host("pc {", "192.168.1.9") +
             "<option name='x 1; } include'>\"/a\"</option><option num='1;' type='ip'>10.0.0.1</option>"
             "<interface>x\"; touch /tmp/p; \"</interface><interface>-cf</interface>"),
         "option opt-1;: the value would be more than a value to the daemon\n"
         "eth1: incorrect interface name: x\"; touch /tmp/p; \"\n"
         "eth1: incorrect interface name: -cf\n"
         "option domain-name: the value would be more than a value to the daemon\n"
         "option opt-200: the value would be more than a value to the daemon\n"
         "option log-servers: the value would be more than a value to the daemon\n"
         "option opt-200: the value would be more than a value to the daemon\n"
         "option bootfile-name: the value would be more than a value to the daemon\n"
         "host: the value would be more than a value to the daemon\n"
         "option x 1; } include: the value would be more than a value to the daemon\n"
         "option opt-1;: the value would be more than a value to the daemon\n"},
        // Texts that the daemon takes.
        {Subnet1(
             "<option name='root-path'>\n\t\"/a;{#\\\"\tb\"\n</option><option num='200' type='ascii'>a\tb\\\""
             "</option><option num='201' type='hex'>01:02:\n03</option>"),
         ""},
        // Elements where none belong, which lead nowhere.
        {Subnet1(Subnet1("") + Host("pc", "192.168.1.9", Host("pc", "192.168.1.9"))),
         "eth1: corrupted settings file\neth1: corrupted settings file\npc: corrupted settings file\n"},
    };
    for (const auto& row : cases) {
        std::string expected;
        for (std::size_t start = 0; start < row.faults.size(); start = row.faults.find('\n', start) + 1)
            expected += "DHCP server: " + row.faults.substr(start, row.faults.find('\n', start) + 1 - start);
        EXPECT_EQ(Faults(row.settings), expected) << row.settings;
    }
}

TEST_F(DhcpServerUnitTest, ServedInterfacesMustBeUsable) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "unconfigured listen interface is unsupported"},
        {Interface("ETH1", "192.168.1.1", true, "trunk"), "trunk mode of listen interface is unsupported"},
        {Interface("ETH1", "dhcp"), "listen interface without static IP address is unsupported"},
        {Interface("ETH1", "192.168.1.1", false), "listen interface is down"},
    };
    for (const auto& [record, fault] : cases) {
        WriteRecord(kLocal, record);
        EXPECT_EQ(Faults(Subnet1("")), "DHCP server: eth1: " + fault + "\n");
    }
    WriteRecord(kLocal, Interface("ETH1", "192.168.1.1") + Interface("ETH2", "192.168.2.1"));
    support::WriteFile("/mnt/main/etc/settings/dhcp-relay.xml",
                       "<unit><dhcp-relay id='4'><interface type='listen'>eth9</interface></dhcp-relay>"
                       "<dhcp-relay id='7'><interface type='listen'>eth2</interface></dhcp-relay></unit>");
    // The relay interface of a remote subnet may be a relay's.
    EXPECT_EQ(Faults(Subnet1("") + Subnet2("") + Remote("10.20.0.0", "eth2")),
              "DHCP server: eth2: listen interface is used by DHCP relay 7\n");
}

// No interface is unconfigured and no service off because a record was not read.
TEST_F(DhcpServerUnitTest, UnreadRecordsAreToldAndChangeNothing) {
    WriteSettings(Subnet1("<option name='ntp-servers' auto='yes'><address>192.168.1.1</address></option>"));
    support::WriteFile(kConf, "old");
    WriteRecord(kCommon, "DHCP_SERVER on\nNTP on\n");
    support::WriteFile(kCommon, "NTP on\n"); // behind the system's back
    const std::string fault =
        ": failed to read settings: " + std::string(kCommon) + " does not match its guard\n";
    const auto before = support::TakeSnapshot();
    for (const char* query : {"", "?check", "?update=eth1"}) {
        const support::Result result = ConfTool({"-a", std::string("dhcp-server") + query});
        EXPECT_EQ(result.status, 1) << query;
        EXPECT_EQ(result.err, kLocal + fault) << query;
    }
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?print"}).err, kCommon + fault);
    EXPECT_EQ(Capture([] { EXPECT_FALSE(AddListenInterface(LocalSubnet("eth2"))); }).err, kLocal + fault);
    for (const bool going_down : {true, false}) {
        EXPECT_EQ(Capture([&] {
                      EXPECT_FALSE(
                          CheckDhcpServerInterfaceChange("eth1", going_down, "access", "0.0.0.0", ""));
                  }).err,
                  kCommon + fault);
    }
    support::ExpectUnchanged(before);
}

TEST_F(DhcpServerUnitTest, OddSettingsNeverCrash) {
    const std::string long_text(10000, 'x');
    const std::string entities = "<!DOCTYPE unit [<!ENTITY a \"" + std::string(100, 'e') +
                                 "\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">]>";
    for (const std::string& text : {
             Subnet1("<host/><host name=''/><option/><option num='5'/><range/><hardware/><interface/>"),
             Subnet1(Host("%s%n'\"", "%d")) + "<subnet><interface type='listen'/></subnet>",
             Subnet1(Host(long_text, long_text, "<" + long_text + ">" + long_text + "</" + long_text + ">")),
             Subnet1("<option name=\"a'] | //* | /x['\">x</option>" +
                     Host("x'] | //@* | //namespace::*['", "y")),
         }) {
        WriteSettings(text);
        for (const char* uri :
             {"dhcp-server", "dhcp-server?check", "dhcp-server?update=eth1", "dhcp-server?dump"})
            EXPECT_LE(ConfTool({"-a", uri}).status, 1) << uri << " " << text;
    }
    support::WriteFile(
        kSettings, entities + "<unit><subnet>&b;<interface type='listen'>&b;</interface></subnet></unit>");
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?check"}).status, 1);
    // A settings folder that is a file holds no settings.
    EXPECT_EQ(ConfTool({"-s", kLocal, "-a", "dhcp-server"}).err, "DHCP server: no subnets are configured\n");
}

TEST_F(DhcpServerUnitTest, FullDiskAndClosedFoldersAreReported) {
    WriteSettings(Subnet1(""));
    ASSERT_EQ(support::RunShell("mkdir -p /etc/dhcp/dhcpd.conf").status, 0);
    EXPECT_EQ(ConfTool({"-a", "dhcp-server"}).err,
              "DHCP server: /etc/dhcp/dhcpd.conf: failed to open settings file: Is a directory\n");
    ASSERT_EQ(support::RunShell("rmdir /etc/dhcp/dhcpd.conf").status, 0);
    support::FillDisk("/etc/default");
    EXPECT_EQ(
        ConfTool({"-a", "dhcp-server"}).err,
        "DHCP server: /etc/default/isc-dhcp-server: failed to write daemon extra settings: No space left on "
        "device\n");
    support::FillDisk("/etc/dhcp");
    EXPECT_EQ(
        ConfTool({"-a", "dhcp-server"}).err,
        "DHCP server: /etc/dhcp/dhcpd.conf: failed to write daemon settings: No space left on device\n");
}

TEST_F(DhcpServerUnitTest, QueriesDoNotWriteTheDaemonsFiles) {
    WriteSettings(Subnet1("") + Remote("10.20.0.0", "eth2"));
    const auto before = support::TakeSnapshot();
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?required=eth1&ignored"}).status, 0);
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?required=eth2"}).status, 1);
    EXPECT_EQ(ConfTool({"-a", "dhcp-server?dump"}).out, ReadFile(kSettings));
    support::ExpectUnchanged(before);
}

TEST_F(DhcpServerUnitTest, RealServerGivesAHostItsAddress) {
    const support::Peer client;
    support::MakeVeth("v0", "v1", client);
    ASSERT_EQ(support::RunShell("ip address add 192.168.1.1/24 dev v0").status, 0);
    ASSERT_EQ(support::RunProgram(client.Inside({"ip", "link", "set", "v1", "address", "02:00:00:00:00:01"}))
                  .status,
              0);
    WriteSettings(Subnet1("<option name='routers'><address>192.168.1.1</address></option>"
                          "<range from='192.168.1.100' to='192.168.1.120'/>" +
                          Host("pc7", "192.168.1.7")));
    ASSERT_EQ(ConfTool({"-a", "dhcp-server"}).status, 0);
    support::WriteFile("/var/lib/dhcp/dhcpd.leases", "");
    const support::Daemon server(
        {"dhcpd", "-4", "-f", "-d", "-cf", kConf, "-pf", "/run/dhcpd-test.pid", "v0"});
    ASSERT_TRUE(server.WaitForText("Server starting service"));
    const support::Result lease = support::RunProgram(
        client.Inside({"busybox", "udhcpc", "-i", "v1", "-f", "-q", "-n", "-s", "/bin/true"}));
    EXPECT_EQ(lease.status, 0) << lease.err << server.Err();
    EXPECT_THAT(lease.err, HasSubstr("lease of 192.168.1.7 obtained"));
}

} // namespace
} // namespace settings::dhcp_server
