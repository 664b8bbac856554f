#include "commands/interfaces/address.h"
#include "commands/interfaces/aliases.h"
#include "commands/interfaces/dhcp_client.h"
#include "commands/interfaces/link.h"
#include "commands/interfaces/reset.h"
#include "commands/interfaces/show.h"
#include "commands/interfaces/state.h"
#include "tests/commands/interfaces/interfaces_fixture.h"

namespace interfaces {
namespace {

using support::Queue;

const std::string kMask = "255.255.255.0";
const std::string kInet = "inet ifconfig ";

class CommandsTest : public InterfacesTest {
protected:
    // The commands by their lines.
    void Address(const std::string& name, const std::string& address, const std::string& netmask = kMask) {
        Play(kInet + name + " address " + address + " netmask " + netmask,
             [&] { return SetAddress(name, address, netmask); });
    }
    void Alias(const std::string& name, const std::string& action, const std::string& address) {
        Play(kInet + name + " address " + action + " " + address + " " + kMask, [&] {
            return action == "add" ? AddAlias(name, address, kMask) : DeleteAlias(name, address, kMask);
        });
    }
    void Dhcp(const std::string& name, const std::string& input = "") {
        Play(
            kInet + name + " dhcp", [&] { return SetDhcp(name); }, input);
    }
    void Use(const std::string& name, const std::string& what, const std::string& value) {
        Play(kInet + name + " dhcp " + what + " " + value, [&] { return SetDhcpUse(name, what, value); });
    }
    void Metric(const std::string& name, const std::string& value) {
        Play(kInet + name + " dhcp route-metric " + value, [&] { return SetDhcpMetric(name, value); });
    }
    void Speed(const std::string& name, const std::string& speed, const std::string& duplex) {
        Play(kInet + name + " speed " + speed + " duplex " + duplex + " autoneg on",
             [&] { return SetSpeed(name, speed, duplex, "on"); });
    }
    void State(const std::string& name, const std::string& word, const std::string& input = "") {
        Play(
            kInet + name + " " + word, [&] { return SetState(name, word); }, input);
    }
    void Reset(const std::string& name) {
        Play(kInet + name + " reset",
             [&] { return name == "all" ? ResetAllInterfaces() : ResetInterface(name); });
    }
    static void QueueAdapters(int count) { Queue("/sbin/ifconfig", {.out = std::string(count + 1, '\n')}); }
    static void MakePassive() {
        support::WriteFile(path_list::velir_sk_nums, "FO_PARAMS=\"cluster\"\n");
        support::WriteFile("/var/spool/corvan/failoverstat", "state\n1\n");
    }
};

TEST_F(CommandsTest, InterfacesThatNoCommandTakes) {
    for (const char* name : {"eth4", "eth9", "a;b"}) {
        Address(name, "10.8.0.1");
        Alias(name, "add", "10.8.0.1");
        Alias(name, "delete", "10.8.0.1");
        Play(kInet + name + " mtu auto", [&] { return SetMtu(name, "auto"); });
        Dhcp(name);
        Use(name, "dns", "on");
        Metric(name, "none");
        Reset(name);
    }
    Play(kInet + "a;b speed auto", [] { return SetSpeedAuto("a;b"); });
    State("eth9", "down");
    support::WriteFile(path_list::local_settings, "ETH1_UP 1\n"); // behind its guard's back
    Play("inet dhcp default-metric 5", [] { return SetDefaultDhcpMetric("5"); });
    ExpectTranscript("interfaces/refused_interfaces");
}

TEST_F(CommandsTest, Addresses) {
    support::WriteFile(SettingsFile("webui"),
                       "<unit><ssl><certificate>/mnt/main/etc/cert/a.pem</certificate></ssl></unit>");
    support::WriteFile("/etc/resolv.dhcp", "nameserver 10.0.0.3\n");
    PlayWithFailures(kInet + "eth1 address 10.9.0.1 netmask 255.255.0.0",
                     [] { return SetAddress("eth1", "10.9.0.1", "255.255.0.0"); }, "",
                     {{"/sbin/ssl_cert_manage.sh", "gate 10.1.0.1\n"}});
    unlink(SettingsFile("webui").c_str());
    Queue("/sbin/ifconfig", {.out = "old\n"});
    Queue("/sbin/ifconfig", {.out = "addr:10.9.0.1  Bcast:10.9.0.7\nMask:255.255.255.252 \n"});
    AlterEntry("eth1", [](auto& entry) { entry.up = false; });
    Address("eth1", "10.9.0.1", "255.255.255.252");

    Address("eth1", "10.8.0.300");
    Address("eth1", "10.8.0.1", "255.0.255.0");
    Address("eth3", "10.8.0.1");
    Address("eth1", "10.8.0.1", "255.255.255.254");
    AlterEntry("eth0", [](auto& entry) { entry.alias_addresses = {"10.7.0.1"}; });
    Address("eth1", "10.7.0.1");
    Address("eth1", "10.5.0.1");
    Address("eth1", "10.5.0.9");
    Address("eth2", "10.5.0.9"); // its client stays stopped
    GiveToDhcp("eth0", "eth1");
    Address("eth1", "10.8.0.1");
    support::WriteFile("/run/dhcp-server.pid", std::to_string(getpid()));
    Address("eth0", "10.8.0.1");
    ExpectTranscript("interfaces/addresses");
}

TEST_F(CommandsTest, Aliases) {
    const std::map<std::string, std::string> alias = {{"/sbin/ifalias.sh", "eth1:0\n"},
                                                      {"/sbin/ifconfig", "header\nlo\n"}};
    PlayWithFailures(
        kInet + "eth1 address add 10.8.0.1 " + kMask, [] { return AddAlias("eth1", "10.8.0.1", kMask); }, "",
        alias);
    QueueAdapters(2);
    Alias("eth1", "add", "10.8.0.1"); // the script names no alias
    QueueAdapters(128);
    Alias("eth1", "add", "10.8.0.1");
    QueueAdapters(2);
    Alias("eth1", "add", "10.5.0.9");
    AlterEntry("eth1", [](auto& entry) {
        entry.alias_addresses = {"10.7.0.1", "10.8.0.1"};
        entry.alias_netmasks = {kMask, kMask};
    });
    PlayWithFailures(
        kInet + "eth1 address delete 10.8.0.1 " + kMask,
        [] { return DeleteAlias("eth1", "10.8.0.1", kMask); }, "", alias);
    Queue("/sbin/ifalias.sh", {.out = "eth1:7\n"});
    Alias("eth1", "delete", "10.6.0.1"); // in the system alone
    for (const char* name : {"eth2", "eth3"}) {
        Alias(name, "add", "10.8.0.1");
        Alias(name, "delete", "10.8.0.1");
    }
    ExpectTranscript("interfaces/aliases");
}

TEST_F(CommandsTest, DhcpClient) {
    PlayWithFailures(kInet + "eth1 dhcp", [] { return SetDhcp("eth1"); });
    AlterEntry("eth1", [](auto& entry) {
        entry.up = false;
        entry.alias_addresses = {"10.8.0.1"};
    });
    Dhcp("eth1");
    Dhcp("eth1", "y\n");
    Dhcp("eth1");
    Dhcp("eth3");
    GiveToDhcp("eth9", "eth0");
    support::WriteFile("/run/dhcp-relay-1.pid", std::to_string(getpid()));
    Dhcp("eth0");
    WriteRecord("WIFIROLE server\nWLAN0_UP 1\n");
    Dhcp("wlan0");
    ExpectTranscript("interfaces/dhcp_client");
}

TEST_F(CommandsTest, DhcpOptions) {
    for (const char* name : {"eth1", "eth2"}) {
        for (const char* what : {"route", "dns", "ntp"}) {
            for (const char* value : {"on", "on", "off", "off"})
                Use(name, what, value);
        }
    }
    Use("eth3", "dns", "on");
    Use("eth1", "wins", "on");
    Use("eth1", "dns", "perhaps");
    Metric("eth2", "30");
    Metric("eth2", "none");
    Metric("eth1", "30");
    Metric("eth1", "3 0");
    Metric("eth3", "30");
    Play("inet dhcp default-metric 33", [] { return SetDefaultDhcpMetric("33"); });
    MakePassive();
    Play("inet dhcp default-metric 34", [] { return SetDefaultDhcpMetric("34"); });
    ExpectTranscript("interfaces/dhcp_options");
}

TEST_F(CommandsTest, LinkSettings) {
    PlayWithFailures(kInet + "eth1 speed 100 duplex half autoneg off",
                     [] { return SetSpeed("eth1", "100", "half", "off"); });
    PlayWithFailures(kInet + "eth1 speed auto", [] { return SetSpeedAuto("eth1"); });
    Speed("eth3.5", "100", "full");
    Play(kInet + "eth3.5 speed auto", [] { return SetSpeedAuto("eth3.5"); });
    Speed("eth1", "100;reboot", "full");
    Speed("eth1", "100", "double");
    AlterEntry("eth3.5", [](auto& entry) { entry.vlan = "6"; });
    Alter([](CConfStruct& record) {
        InterfaceEntry child = record.Interfaces().at("eth3.5");
        child.vlan = "7";
        record.AddInterface("eth3.7", child, true); // the kernel has no such interface
    });
    for (const char* value : {"1300", "auto", "12", "x", "99999999999"})
        Play(kInet + "eth3 mtu " + value, [&] { return SetMtu("eth3", value); });
    ExpectTranscript("interfaces/link");
}

TEST_F(CommandsTest, States) {
    PlayWithFailures(
        kInet + "eth3 down", [] { return SetState("eth3", "down"); }, "y\n");
    State("eth3", "down", "n\n");
    State("eth3", "up");
    State("eth3", "down", "y\n");
    State("eth3", "down");
    State("eth3.5", "up");
    PlayWithFailures(
        kInet + "eth3 up", [] { return SetState("eth3", "up"); }, "y\n");
    PlayWithFailures(kInet + "eth2 down", [] { return SetState("eth2", "down"); });
    AlterEntry("eth1", [](auto& entry) { entry.netmask = "255.255.255.254"; });
    State("eth1", "up");
    State("eth1", "sideways");
    GiveToDhcp("eth1", "eth0");
    State("eth1", "down");
    State("eth0", "down");
    ExpectTranscript("interfaces/states");
}

TEST_F(CommandsTest, Resets) {
    PlayWithFailures(kInet + "eth1 reset", [] { return ResetInterface("eth1"); });
    PlayWithFailures(kInet + "all reset", ResetAllInterfaces);
    GiveToDhcp("eth9", "eth1");
    Reset("eth1");
    Reset("all");
    unlink(SettingsFile("dhcp-server").c_str());
    Reset("all");
    WriteRecord("WIFIROLE server\nWLAN0_UP 1\n");
    support::WriteFile("/run/hostapd.pid", std::to_string(getpid()));
    Reset("wlan0");
    ExpectTranscript("interfaces/resets");
}

TEST_F(CommandsTest, ShowAndPing) {
    for (const char* text : {"bond0\nSpeed: 1\n", "eth0\nup\n", "eth1\nConfigured by DHCP: no\n"})
        Queue("/sbin/dhcpclient.sh", {.out = text});
    QueueAdapters(2);
    Play("inet show interface", ShowInterfaces);
    for (const char* target : {"10.5.0.255", "10.5.0.0", "-f", "10.5.0.9", "dhcp"})
        Play(std::string("inet ping ") + target, [&] { return Ping(target); });
    ExpectTranscript("interfaces/show_and_ping");
}

} // namespace
} // namespace interfaces
