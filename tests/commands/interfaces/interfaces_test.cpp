#include "tests/commands/interfaces/interfaces_fixture.h"

namespace interfaces {
namespace {

using support::Queue;

const std::string kMask = "255.255.255.0";

class CommandsTest : public InterfacesTest {
protected:
    static void QueueAdapters(int count) { Queue("/sbin/ifconfig", {.out = std::string(count + 1, '\n')}); }
};

TEST_F(CommandsTest, InterfacesThatNoCommandTakes) {
    for (const std::string name : {"inet ifconfig eth4 ", "inet ifconfig eth9 "})
        Type({name + "address 10.8.0.1 netmask 255.255.255.0", name + "address add 10.8.0.1 255.255.255.0",
              name + "address delete 10.8.0.1 255.255.255.0", name + "mtu auto", name + "dhcp",
              name + "dhcp dns on", name + "dhcp route-metric none", name + "reset"});
    Type({"inet ifconfig a;b mtu auto", "inet ifconfig a;b speed auto", "inet ifconfig a;b down",
          "inet ifconfig eth9 down"});
    support::WriteFile(path_list::local_settings, "ETH1_UP 1\n"); // behind its guard's back
    Type({"inet dhcp default-metric 5", "inet ifconfig eth1 mtu auto", "inet ifconfig eth1 class access",
          "inet ifconfig eth1 down", "inet ifconfig all reset", "inet show interface", "inet ping 10.0.0.9"});
    ExpectTranscript("interfaces/refused_interfaces");
}

TEST_F(CommandsTest, Addresses) {
    Certify("gate 10.1.0.1");
    support::WriteFile("/etc/resolv.dhcp", "nameserver 10.0.0.3\n");
    Type({"! inet ifconfig eth1 address 10.9.0.1 netmask 255.255.0.0"});
    unlink(SettingsFile("webui").c_str());
    answers_ = {};
    Queue("/sbin/ifconfig", {.out = "old\n"});
    Queue("/sbin/ifconfig", {.out = "addr:10.9.0.1  Bcast:10.9.0.7\nMask:255.255.255.252 \n"});
    AlterEntry("eth1", [](auto& entry) { entry.up = false; });
    AlterEntry("eth0", [](auto& entry) { entry.alias_addresses = {"10.7.0.1"}; });
    AlterEntry("eth1", [](auto& entry) { entry.alias_addresses = {"10.7.0.2"}; });
    Type({"inet ifconfig eth1 address 10.9.0.1 netmask 255.255.255.252",
          "inet ifconfig eth1 address 10.8.0.300 netmask 255.255.255.0",
          "inet ifconfig eth1 address 10.8.0.1 netmask 255.0.255.0",
          "inet ifconfig eth1 address 10.8.0.15 netmask 255.255.255.240",
          "inet ifconfig eth1 address 10.8.0.16 netmask 255.255.255.240",
          "inet ifconfig eth1 address 127.0.0.1 netmask 255.0.0.0",
          "inet ifconfig eth1 address 224.0.0.5 netmask 255.255.255.0",
          "inet ifconfig eth3 address 10.8.0.1 netmask 255.255.255.0",
          "inet ifconfig eth1 address 10.8.0.1 netmask 255.255.255.254",
          "inet ifconfig eth1 address 10.7.0.1 netmask 255.255.255.0",
          "inet ifconfig eth1 address 10.7.0.2 netmask 255.255.255.0", // an alias of its own
          "inet ifconfig eth1 address 10.5.0.1 netmask 255.255.255.0",
          "inet ifconfig eth1 address 10.5.0.9 netmask 255.255.255.0",
          "inet ifconfig eth2 address 10.5.0.9 netmask 255.255.255.0"}); // its client stays stopped
    GiveToDhcp("eth0", "eth1");
    support::WriteFile("/run/dhcp-server.pid", std::to_string(getpid()));
    Type({"inet ifconfig eth1 address 10.8.0.1 netmask 255.255.255.0",
          "inet ifconfig eth0 address 10.8.0.1 netmask 255.255.255.0"});
    ExpectTranscript("interfaces/addresses");
}

TEST_F(CommandsTest, Aliases) {
    answers_ = {{"/sbin/ifalias.sh", {"eth1:0\n"}}, {"/sbin/ifconfig", {"header\nlo\n"}}};
    Type({"! inet ifconfig eth1 address add 10.8.0.1 255.255.255.0"});
    Queue("/sbin/ifalias.sh", {}); // names no alias
    Type({"inet ifconfig eth1 address add 10.8.0.1 255.255.255.0"});
    QueueAdapters(128);
    Type({"inet ifconfig eth1 address add 10.8.0.1 255.255.255.0",
          "inet ifconfig eth1 address add 10.5.0.9 255.255.255.0"});
    AlterEntry("eth1", [](auto& entry) {
        entry.alias_addresses = {"10.7.0.1", "10.8.0.1"};
        entry.alias_netmasks = {kMask, kMask};
    });
    Type({"! inet ifconfig eth1 address delete 10.8.0.1 255.255.255.0",
          "inet ifconfig eth1 address delete 10.6.0.1 255.255.255.0", // in the system alone
          "inet ifconfig eth2 address add 10.8.0.1 255.255.255.0",
          "inet ifconfig eth2 address delete 10.8.0.1 255.255.255.0",
          "inet ifconfig eth3 address add 10.8.0.1 255.255.255.0",
          "inet ifconfig eth3 address delete 10.8.0.1 255.255.255.0"});
    Type({"inet ifconfig eth1 address add 10.8.0.255 255.255.255.0",
          "inet ifconfig eth1 address delete 10.8.0.255 255.255.255.0"}); // of an earlier system
    AlterEntry("eth1", [](auto& entry) { ClearAddresses(entry); });
    Type({"inet ifconfig eth1 address add 10.8.0.1 255.255.255.0"});
    ExpectTranscript("interfaces/aliases");
}

// Whoever uses an interface is asked about a change, warned of it, and follows it.
TEST_F(CommandsTest, UsersFollow) {
    shown_file_ = SettingsFile("dhcp-server");
    Certify("10.0.0.1 10.8.0.1 10.8.0.55");
    GiveToDhcp("eth0", "eth9");
    Type({"inet ifconfig eth0 address 10.8.0.55 netmask 255.255.255.0", // in a range of the server's
          "inet ifconfig eth0 address 10.8.0.1 netmask 255.255.255.0"});
    GiveToDhcp("eth0", "eth9", "off");
    Type({"inet ifconfig eth0 address 10.8.0.55 netmask 255.255.255.0", "inet ifconfig eth0 down",
          "inet ifconfig eth0 up"});
    GiveToDhcp("eth0", "eth9", "off");
    answers_["/sbin/ifalias.sh"] = {"eth0:0\n"};
    Type({"inet ifconfig eth0 reset", "inet ifconfig eth0 address delete 10.6.0.1 255.255.255.0",
          "inet ifconfig eth0 dhcp"});
    ExpectTranscript("interfaces/users");
}

TEST_F(CommandsTest, DhcpClient) {
    Type({"! inet ifconfig eth1 dhcp"});
    AlterEntry("eth1", [](auto& entry) {
        entry.up = false;
        entry.alias_addresses = {"10.8.0.1"};
    });
    Type({"inet ifconfig eth1 dhcp", "inet ifconfig eth1 dhcp < y", "inet ifconfig eth1 dhcp",
          "inet ifconfig eth3 dhcp"});
    GiveToDhcp("eth9", "eth0");
    support::WriteFile("/run/dhcp-relay-1.pid", std::to_string(getpid()));
    Type({"inet ifconfig eth0 dhcp"});
    WriteRecord("WIFIROLE server\nWLAN0_UP 1\n");
    Type({"inet ifconfig wlan0 dhcp"});
    ExpectTranscript("interfaces/dhcp_client");
}

TEST_F(CommandsTest, DhcpOptions) {
    for (const std::string name : {"inet ifconfig eth1 dhcp ", "inet ifconfig eth2 dhcp "}) {
        for (const char* what : {"route ", "dns ", "ntp "}) {
            for (const char* value : {"on", "on", "off", "off"})
                Type({name + what + value});
        }
    }
    Type({"inet ifconfig eth3 dhcp dns on", "inet ifconfig eth1 dhcp wins on",
          "inet ifconfig eth1 dhcp dns perhaps", "inet ifconfig eth2 dhcp route-metric 30",
          "inet ifconfig eth2 dhcp route-metric none", "inet ifconfig eth1 dhcp route-metric 30",
          "inet ifconfig eth1 dhcp route-metric \"3 0\"", "inet ifconfig eth3 dhcp route-metric 30",
          "inet dhcp default-metric 33"});
    JoinCluster(1);
    Type({"inet dhcp default-metric 34"});
    ExpectTranscript("interfaces/dhcp_options");
}

TEST_F(CommandsTest, LinkSettings) {
    Type({"! inet ifconfig eth1 speed 100 duplex half autoneg off", "! inet ifconfig eth1 speed auto",
          "inet ifconfig eth3.5 speed 100 duplex full autoneg on", "inet ifconfig eth3.5 speed auto",
          "inet ifconfig eth1 speed 100;reboot duplex full autoneg on",
          "inet ifconfig eth1 speed 100 duplex double autoneg on"});
    Type({"inet ifconfig eth3 mtu 1300", "inet ifconfig eth3 mtu auto", "inet ifconfig eth3 mtu \"\"",
          "inet ifconfig eth3 mtu 12", "inet ifconfig eth3 mtu x", "inet ifconfig eth3 mtu 99999999999"});
    ExpectTranscript("interfaces/link");
}

TEST_F(CommandsTest, States) {
    Type({"! inet ifconfig eth3 down < y", "inet ifconfig eth3 down < n", "inet ifconfig eth3 up",
          "inet ifconfig eth3 down < y", "inet ifconfig eth3 down", "inet ifconfig eth3.5 up",
          "! inet ifconfig eth3 up < y", "inet ifconfig eth3 up < y", "inet ifconfig eth3.5 down",
          "inet ifconfig eth3 down < y", // one child has the state already
          "! inet ifconfig eth2 down"});
    AlterEntry("eth1", [](auto& entry) { entry.netmask = "255.255.255.254"; });
    Type({"inet ifconfig eth1 up", "inet ifconfig eth1 sideways"});
    GiveToDhcp("eth1", "eth0");
    Type({"inet ifconfig eth1 down", "inet ifconfig eth0 down"});
    ExpectTranscript("interfaces/states");
}

TEST_F(CommandsTest, Resets) {
    Type({"! inet ifconfig eth1 reset", "! inet ifconfig all reset"});
    GiveToDhcp("eth9", "eth1");
    Type({"inet ifconfig eth1 reset", "inet ifconfig all reset"});
    unlink(SettingsFile("dhcp-server").c_str());
    Type({"inet ifconfig all reset"});
    GiveToDhcp("eth0 eth1", "eth8 eth9", "off");
    Type({"inet ifconfig all reset"}); // all of the server's are asked, and the first of the relays'
    WriteRecord("WIFIROLE server\nWLAN0_UP 1\n");
    support::WriteFile("/run/hostapd.pid", std::to_string(getpid()));
    Type({"inet ifconfig wlan0 reset"});
    ExpectTranscript("interfaces/resets");
}

TEST_F(CommandsTest, ShowAndPing) {
    for (const char* text : {"bond0\nSpeed: 1\n", "eth0\nup\n", "eth1\nConfigured by DHCP: no\n"})
        Queue("/sbin/dhcpclient.sh", {.out = text});
    QueueAdapters(2);
    AlterEntry("eth0", [](auto& entry) {
        entry.alias_addresses = {"10.7.0.1", "10.8.0.1"};
        entry.alias_netmasks = {kMask, kMask};
        entry.alias_broadcasts = {"10.7.0.255", "10.8.0.255"};
    });
    Type({"inet show interface", "inet ping 10.5.0.255", "inet ping 10.5.0.0", "inet ping 10.8.0.255",
          "inet ping 10.8.0.0", "inet ping -f", "inet ping 10.5.0.9", "inet ping dhcp"});
    ExpectTranscript("interfaces/show_and_ping");
}

} // namespace
} // namespace interfaces
