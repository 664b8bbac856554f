#include "tests/units/dhcp_server/server_fixture.h"
#include "units/dhcp_server/hosts.h"
#include "units/dhcp_server/list_options.h"
#include "units/dhcp_server/reset.h"
#include "units/dhcp_server/single_options.h"
#include "units/dhcp_server/subnets.h"

#include <functional>

namespace settings::dhcp_server {
namespace {

using support::Capture;
using support::ReadFile;

class DhcpServerEditTest : public ServerAppliance {
protected:
    using Edit = std::function<bool()>;

    // A refusal says just that, and leaves every file as it was.
    static void ExpectRefused(const Edit& edit, const std::string& error) {
        const auto before = support::TakeSnapshot();
        const auto output = Capture([&] { EXPECT_FALSE(edit()) << error; });
        EXPECT_EQ(output.err, error.empty() ? "" : "DHCP server: " + error + "\n");
        support::ExpectUnchanged(before);
    }

    static void ExpectDone(const Edit& edit, const std::string& said = "") {
        const auto output = Capture([&] { EXPECT_TRUE(edit()) << said; });
        EXPECT_EQ(output.err, said.empty() ? "" : "DHCP server: " + said + "\n");
    }

    static std::string Times(int count, const std::function<std::string(int)>& text) {
        std::string result;
        for (int i = 1; i <= count; ++i)
            result += text(i);
        return result;
    }

    const LocalSubnet eth1{"eth1"};
    const Area unit;
};

TEST_F(DhcpServerEditTest, NetworkBuiltByEditsIsAcceptedAndPrinted) {
    WriteRecord(kCommon, "DNS on\nNTP on\n");
    support::WriteFile(kSettings, "<unit name='dhcp-server'/>");
    const RemoteSubnet remote("10.20.0.0", "255.255.0.0");
    const settings::dhcp_server::Host host("pc7");
    ExpectDone([&] { return SetDefaultLeaseTime(unit, "3600") && SetMaxLeaseTime(unit, "7200"); });
    ExpectDone([&] { return AddListenInterface(eth1) && SetTftpServer(eth1, "192.168.1.6", ""); });
    ExpectDone([&] { return AddRelayInterface(remote, "eth1"); });
    ExpectDone([&] { return AddRange(eth1, "192.168.1.100", "192.168.1.149"); });
    ExpectDone([&] { return AddHost(host, eth1, "02:00:00:00:00:07", "192.168.1.7"); });
    ExpectDone([&] { return AddRouter(remote, "10.20.0.1") && AddWinsServer(eth1, "192.168.1.5"); });
    ExpectDone(
        [&] { return AddVoipTftpServer(eth1, "192.168.1.5") && AddVoipTftpServer(eth1, "192.168.1.6"); });
    ExpectDone(
        [&] { return SetTftpServer(host, "192.168.1.5", "boot.img") && SetDomainName(unit, "a.example"); });
    ExpectDone([&] {
        return SetCustomOption(host, "224", "ascii", "tag") && SetCustomOption(unit, "225", "ip", "10.0.0.1");
    });
    support::ExpectGolden(kSettings, "units/dhcp_server/edited.xml");
    EXPECT_EQ(support::ConfTool({"-a", "dhcp-server"}).status, 0);
    support::ExpectGolden(kConf, "units/dhcp_server/edited.dhcpd.conf");
    EXPECT_EQ(support::RunProgram({"dhcpd", "-4", "-t", "-cf", kConf}).status, 0);
    const support::Result printed = support::ConfTool({"-a", "dhcp-server?print"});
    EXPECT_EQ(printed.status, 0);
    support::WriteFile("/tmp/printed", printed.out);
    support::ExpectGolden("/tmp/printed", "units/dhcp_server/edited.txt");
    EXPECT_TRUE(CheckDhcpServerSettings());
    EXPECT_EQ(support::RunShell("ls /tmp/dhcp-server-*").status, 2); // no report stays behind
}

TEST_F(DhcpServerEditTest, LimitsHoldAtTheirEdges) {
    const auto address = [](int i) { return "<address>192.168.1." + std::to_string(i) + "</address>"; };
    const auto range = [](int i) {
        const std::string n = std::to_string(100 + i);
        return "<range from='192.168.1." + n + "' to='192.168.1." + n + "'/>";
    };
    const auto host = [](int i) {
        return "<host name='h" + std::to_string(i) + "'><hardware type='ethernet' mac='m" +
               std::to_string(i) + "'/><address>192.168.1.9</address></host>";
    };
    const auto interface = [](int i) {
        return "<subnet address='a' netmask='b'><interface type='listen'>x" + std::to_string(i) +
               "</interface></subnet>";
    };
    const std::string maximum = ": failed to add ";
    const std::string reached = " due to maximum number is reached: ";
    const settings::dhcp_server::Host pc("pc");
    const struct {
        std::function<std::string(int)> settings; // with so many entries
        int maximum;
        Edit edit;
        std::string error;
    } cases[] = {
        {[&](int n) {
             return Subnet1("<option name='routers' auto='yes'><address>192.168.1.1</address></option>"
                            "<option name='routers'>" +
                            Times(n, address) + "</option>");
         },
         10, [&] { return AddRouter(eth1, "192.168.1.10"); }, "eth1" + maximum + "router" + reached + "10"},
        {[&](int n) { return Subnet1("<option name='ntp-servers'>" + Times(n, address) + "</option>"); }, 10,
         [&] { return AddNtpServer(eth1, "192.168.1.50"); },
         "eth1" + maximum + "NTP server" + reached + "10"},
        {[&](int n) { return Subnet1("<option name='voip-tftp-server'>" + Times(n, address) + "</option>"); },
         2, [&] { return AddVoipTftpServer(eth1, "192.168.1.50"); },
         "eth1" + maximum + "VOIP TFTP server" + reached + "2"},
        {[&](int n) { return Subnet1(Times(n, range)); }, 64,
         [&] { return AddRange(eth1, "192.168.1.50", "192.168.1.51"); },
         "eth1" + maximum + "range" + reached + "64"},
        {[&](int n) { return Subnet1(Times(n, host)); }, 1024,
         [&] { return AddHost(pc, eth1, "new", "192.168.1.9"); }, "pc" + maximum + "host" + reached + "1024"},
        {[&](int n) { return Times(n, interface); }, 128, [&] { return AddListenInterface(eth1); },
         "eth1: failed to add interface due to maximum number of listen interfaces: 128"},
    };
    for (const auto& row : cases) {
        WriteSettings(row.settings(row.maximum));
        ExpectRefused(row.edit, row.error);
        WriteSettings(row.settings(row.maximum - 1));
        ExpectDone(row.edit);
    }
}

TEST_F(DhcpServerEditTest, RefusalsNameTheirReason) {
    WriteSettings(
        Subnet1(
            "<option name='routers'><address>192.168.1.2</address><address>192.168.1.60</address></option>"
            "<range from='192.168.1.100' to='192.168.1.110'/>"
            "<option num='200' type='ip'>1.1.1.1</option>" +
            Host("pc7", "192.168.1.7")) +
        Subnet2("<range from='192.168.2.50' to='192.168.2.40'/>") + Remote("10.20.0.0", "eth1"));
    const RemoteSubnet remote("10.20.0.0", "255.255.0.0");
    const settings::dhcp_server::Host pc7("pc7");
    const settings::dhcp_server::Host pc8("pc8");
    const std::pair<Edit, const char*> cases[] = {
        {[&] { return AddListenInterface(eth1); },
         "eth1: interface is already in use within subnet 192.168.1.0/255.255.255.0"},
        {[&] { return AddListenInterface(LocalSubnet("eth9")); },
         "eth9: unconfigured listen interface is unsupported"},
        {[&] { return AddRelayInterface(remote, "eth1"); }, "10.20.0.0/255.255.0.0: subnet already exists"},
        {[&] { return AddRelayInterface(RemoteSubnet("10.30.0.0", "255.255.0.0"), "eth3"); },
         "10.30.0.0/255.255.0.0: relay interface does not correspond to any listen interface"},
        {[&] { return AddRelayInterface(RemoteSubnet("10.30.0.0", "255.0.255.0"), "eth1"); },
         "10.30.0.0/255.0.255.0: incorrect address format of subnet netmask: 255.0.255.0"},
        {[&] { return SetBroadcastAddress(unit); }, ":: incorrect address format of broadcast address: "},
        {[&] { return EraseLocalSubnet(eth1); },
         "eth1: failed to erase subnet due to existence of associated remote subnets"},
        {[&] { return EraseRemoteSubnet(remote, "eth2"); },
         "10.20.0.0/255.255.0.0: no such remote subnet with relay interface: eth2"},
        {[&] { return AddRange(eth1, "192.168.1.110", "192.168.1.120"); },
         "eth1: range [192.168.1.110 - 192.168.1.120] intersects with range [192.168.1.100 - 192.168.1.110]"},
        {[&] { return AddRange(eth1, "192.168.1.50", "192.168.1.70"); },
         "eth1: address 192.168.1.60 of router is in the dynamic address range [192.168.1.50 - "
         "192.168.1.70]"},
        {[&] { return AddRange(LocalSubnet("eth2"), "192.168.2.100", "192.168.2.110"); },
         "eth2: range [192.168.2.50 - 192.168.2.40] is invalid"},
        {[&] { return SetSubnetMask(eth1, "255.255.0.0"); },
         "eth1: subnet mask  will be overwritten with 255.255.0.0\n"
         "DHCP server: eth1: incorrect subnet mask scope: 255.255.0.0"},
        {[&] { return RemoveRange(eth1, "192.168.1.100", "192.168.1.111"); },
         "eth1: range [192.168.1.100 - 192.168.1.111] is not in use"},
        {[&] { return RemoveRange(eth1, "' or '1' = '1", "x"); },
         "eth1: range [' or '1' = '1 - x] is not in use"},
        {[&] { return AddHost(pc7, eth1, "02:00:00:00:00:99", "192.168.1.8"); },
         "pc7: host is already in use within subnet 192.168.1.0/255.255.255.0"},
        {[&] { return AddHost(pc8, eth1, "02:00:00:00:00:01", "192.168.1.8"); },
         "pc8: 02:00:00:00:00:01 mac address is already in use"},
        {[&] { return AddHost(pc8, eth1, "02:00:00:00:00:08", "192.168.1.255"); },
         "eth1: incorrect address scope of pc8: 192.168.1.255"},
        {[&] { return AddHost(pc8, LocalSubnet("eth3"), "02:00:00:00:00:08", "192.168.3.8"); },
         "eth3: listen interface is not in use"},
        {[&] { return EraseHost(pc8); }, "pc8: no such host"},
        {[&] { return AddRouter(eth1, "192.168.1.60"); }, "eth1: router 192.168.1.60 is already in use"},
        {[&] { return AddRouter(eth1, "192.168.2.1"); },
         "eth1: incorrect address scope of router: 192.168.2.1"},
        {[&] { return AddRouter(eth1, "192.168.1.7"); },
         "eth1: address of router is in use within host pc7: 192.168.1.7"},
        {[&] { return RemoveRouter(eth1, "192.168.1.3"); }, "eth1: router 192.168.1.3 is not in use"},
        {[&] { return RemoveDnsServer(eth1, "x' or 'x"); },
         "eth1: domain name server x' or 'x is not in use"},
        {[&] { return SetCustomOption(unit, "200", "hex", "01"); },
         "custom option 200 already has different type: ip"},
        {[&] { return ClearCustomOption(eth1, "201"); }, "eth1: 201 custom option is not set"},
        {[&] { return ClearDomainName(eth1); }, "eth1: domain name is not set"},
        {[&] { return ClearMaxLeaseTime(unit); }, ":: max lease time is not set"},
    };
    for (const auto& [edit, error] : cases)
        ExpectRefused(edit, error);
    support::WriteFile("/run/dhcp-server.pid", std::to_string(getpid()));
    support::WriteFile("/var/lib/dhcp/dhcpd.leases", "lease");
    // Before any other reason, and before anything is touched.
    for (const Edit& edit :
         {Edit([&] { return EraseLocalSubnet(eth1); }),
          Edit([&] { return EraseRemoteSubnet(remote, "eth2"); }), Edit(ResetDhcpServerSettings)})
        ExpectRefused(edit, "prohibited to change configuration while daemon is running");
}

TEST_F(DhcpServerEditTest, PublicAddressesAreTakenWithAWarning) {
    WriteSettings(Subnet1(Host("pc7", "192.168.1.7")));
    const RemoteSubnet remote("8.8.0.0", "255.255.0.0");
    const std::string unsafe = " on local area network is unsafe";
    ExpectDone([&] { return AddRelayInterface(remote, "eth1"); },
               "8.8.0.0/255.255.0.0: use of 8.8.0.0 subnet address" + unsafe);
    ExpectDone([&] { return AddRange(remote, "8.8.1.1", "8.8.1.9"); },
               "8.8.0.0/255.255.0.0: use of 8.8.1.1 lower bound of the range" + unsafe +
                   "\nDHCP server: 8.8.0.0/255.255.0.0: use of 8.8.1.9 upper bound of the range" + unsafe);
    ExpectDone([&] { return AddRouter(remote, "8.8.0.1"); },
               "8.8.0.0/255.255.0.0: use of 8.8.0.1 router" + unsafe);
    // The address of a network card counts in its own subnet alone.
    ExpectDone(
        [&] { return AddHost(settings::dhcp_server::Host("pc8"), remote, "02:00:00:00:00:01", "8.8.0.9"); },
        "pc8: use of 8.8.0.9 host address" + unsafe);
    ExpectDone([&] { return SetBroadcastAddress(remote); },
               "8.8.0.0/255.255.0.0: broadcast address 8.8.255.255 will be overwritten with 8.8.255.255\n"
               "DHCP server: 8.8.0.0/255.255.0.0: use of 8.8.255.255 broadcast address" +
                   unsafe);
}

TEST_F(DhcpServerEditTest, ManagedValuesFollowTheServicesAndGiveWay) {
    for (const bool is_time : {true, false}) {
        WriteRecord(kCommon, is_time ? "NTP on\nDNS off\n" : "NTP off\nDNS on\n");
        support::WriteFile(kSettings, "<unit name='dhcp-server'/>");
        ExpectDone([&] { return AddListenInterface(eth1); });
        EXPECT_EQ(ReadFile(kSettings).find("\"ntp-servers\"") != std::string::npos, is_time);
        EXPECT_EQ(ReadFile(kSettings).find("\"domain-name-servers\"") != std::string::npos, !is_time);
        // The program's own value is no duplicate.
        ExpectDone([&] {
            return AddRouter(eth1, "192.168.1.1") &&
                   (is_time ? AddNtpServer(eth1, "192.168.1.1") : AddDnsServer(eth1, "192.168.1.1"));
        });
    }
}

TEST_F(DhcpServerEditTest, OverwritingWarns) {
    WriteSettings(
        "<default-lease-time>1</default-lease-time><max-lease-time>2</max-lease-time>" +
        Subnet1("<option name='domain-name'>old</option><option num='200' type='ip'>1.1.1.1</option>"
                "<option name='tftp-server' file='boot'>192.168.1.5</option>"));
    ExpectDone([&] { return SetDefaultLeaseTime(unit, "3"); },
               ":: default lease time 1 will be overwritten with 3");
    ExpectDone([&] { return SetMaxLeaseTime(unit, "4"); }, "max lease time 2 will be overwritten with 4");
    ExpectDone([&] { return SetDomainName(eth1, "new"); },
               "eth1: domain name old will be overwritten with new");
    ExpectDone([&] { return SetCustomOption(eth1, "200", "ip", "2.2.2.2"); },
               "eth1: 200 custom option 1.1.1.1 will be overwritten with 2.2.2.2");
    ExpectDone([&] { return SetSubnetMask(eth1, "255.255.255.128"); },
               "eth1: subnet mask  will be overwritten with 255.255.255.128");
    ExpectDone([&] { return SetBroadcastAddress(eth1); });
    ExpectDone([&] { return SetTftpServer(eth1, "192.168.1.6", ""); },
               "eth1: TFTP server 192.168.1.5 will be overwritten with 192.168.1.6");
    ExpectDone([&] { return AddDnsServer(eth1, "192.168.1.5") && RemoveDnsServer(eth1, "192.168.1.5"); });
    support::ExpectGolden(kSettings, "units/dhcp_server/overwritten.xml");
}

} // namespace
} // namespace settings::dhcp_server
