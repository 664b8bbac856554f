#include "commands/l2overip/commands.h"
#include "commands/l2overip/configuration.h"
#include "commands/l2overip/driver.h"
#include "tests/commands/interfaces/command_fixture.h"

#include <system_error>

namespace l2overip {
namespace {

using support::WriteFile;

const std::string kFile = "/mnt/main/etc/l2overip.conf";
const std::string kGuard = "/mnt/main/etc/l2overip-config.crg";
const std::string kScript = "/usr/sbin/l2overip.sh";
const std::string kComplete = "mode = off\nmac_ttl = 300\ndevice = eth1\nlocal_port = 1, 203.0.113.2\n"
                              "remote_port = 2, 198.51.100.7\n";

class L2OverIpTest : public CommandTest {
protected:
    L2OverIpTest() {
        support::Record(kScript);
        support::Record("/sbin/textpager.sh");
        WriteRecord("ETH0_IP 203.0.113.2 203.0.113.20\nETH0_MASK 255.255.255.0 255.255.255.0\n"
                    "ETH1_IP 192.168.1.1\nETH1.5_VLAN 5\nETH1.5_PARENT ETH1\nETH1.5_IP 192.168.5.1\n"
                    "ETH2_IP dhcp\nETH3_IP 192.168.3.255\nETH4_IP 192.168.4.1\n");
        WriteFile(kFile, kComplete);
    }

    // The commands by their lines. An edit ends with the file that it leaves.
    void Interface(const std::string& device) {
        Play(
            "l2overip interface " + device, [&] { return SetInterface(device); }, "", kFile);
    }
    void Local(const std::string& number, const std::string& address) {
        Play(
            "l2overip local port " + number + " " + address, [&] { return SetLocalPort(number, address); },
            "", kFile);
    }
    void Remote(const std::string& number, const std::string& address) {
        Play(
            "l2overip remote port " + number + " " + address, [&] { return SetRemotePort(number, address); },
            "", kFile);
    }
    void Delete(const std::string& number, const std::string& input = "") {
        Play(
            "l2overip remote port delete " + number, [&] { return DeleteRemotePort(number); }, input, kFile);
    }
    void MacTtl(const std::string& value) {
        Play(
            "l2overip mac-ttl " + value, [&] { return SetMacTtl(value); }, "", kFile);
    }
    void Frames(const std::string& value) {
        Play(
            "l2overip unsolicited-frames " + value, [&] { return SetUnsolicitedFrames(value); }, "", kFile);
    }
    void Mode(const std::string& value) {
        Play(
            "l2overip mode " + value, [&] { return SetMode(value); }, "", kFile);
    }
    void ShowReport(const std::string& what) {
        Play("l2overip show " + what, [&] { return Show(what); });
    }

    // The driver's state file, on a file system of its own.
    static void SetDriver(const std::string& state) {
        const char* const mount = "mount -t tmpfs driver /proc/driver && mkdir /proc/driver/l2overip";
        ASSERT_EQ(support::RunShell(mount).status, 0);
        WriteFile("/proc/driver/l2overip/config", state);
    }
    static void MakePassive() {
        WriteFile(path_list::velir_sk_nums, "FO_PARAMS=\"cluster\"\n");
        WriteFile("/var/spool/corvan/failoverstat", "state\n1\n");
    }
};

TEST_F(L2OverIpTest, EditsFromAnEmptyFile) {
    WriteFile(kFile, "");
    Interface("eth1");
    Interface("eth1");
    Local("01", "203.0.113.20");
    Frames("drop");
    Frames("drop");
    Remote("10", "198.51.100.10");
    Remote("9", "198.51.100.9");
    Remote("9", "198.51.100.8");
    MacTtl("300");
    EXPECT_TRUE(corvanshell::CheckGuardFile(kGuard.c_str(), kFile.c_str(), nullptr));
    Mode("switch");
    Mode("switch");
    Delete("10", "n\n");
    Delete("10", "y\n");
    Delete("10");
    Delete("9"); // the last one
    Mode("off");
    Delete("9", "y\n");
    ExpectTranscript("l2overip/edits");
}

TEST_F(L2OverIpTest, OptionsGroupIsRead) {
    WriteFile(kFile,
              "[options]\n# by hand\nmode=switch\nlocal_port=3,10.0.0.3\nremote_port = 4,  10.0.0.4\n");
    L2OverIpConfig config;
    EXPECT_TRUE(L2OverIpRead(config));
    EXPECT_EQ(L2OverIpGet(config, "mode") + L2OverIpGet(config, "local_num") +
                  L2OverIpGet(config, "local_ip") + L2OverIpGet(config, "nothing") +
                  config.remote_ports.at(4),
              "switch310.0.0.310.0.0.4");
}

TEST_F(L2OverIpTest, Refusals) {
    support::MakeVeth("ppp0", "eth2");
    ASSERT_EQ(support::RunShell("ip address add 10.5.0.1/24 dev ppp0 && ip address add 10.6.0.1/24 dev eth2")
                  .status,
              0);
    for (const char* address :
         {"10.0.0.1", "10.5.0.1", "192.168.1.1", "192.168.5.1", "10.6.0.1", "192.168.3.255", "192.168.3"})
        Local("5", address);
    Local("2", "192.168.4.1");
    Remote("1", "198.51.100.9");
    for (const char* address :
         {"203.0.113.2", "198.51.100.0", "230.1.1.1", "198.51.100.7", "198.51.100.7\nmode = switch"})
        Remote("3", address);
    WriteFile(kFile, "remote_port = 2, 192.168.4.1\n");
    Local("5", "192.168.4.1");
    WriteFile(kFile, "device = eth1\nremote_port = 2, 192.168.4.1\n");
    Local("5", "192.168.4.1");
    EXPECT_THROW((void)IsBroadcastLike("10.0.0"), std::system_error);
    Interface("ppp1");
    Interface("eth1;reboot");
    Mode("switch\ndevice = eth0");
    WriteFile(kFile, "local_port = one\n");
    MacTtl("9");
    unlink(kFile.c_str());
    Play("l2overip mac-ttl 9", [] { return SetMacTtl("9"); });
    MakePassive();
    Play("l2overip mode switch", [] { return SetMode("switch"); });
    ExpectTranscript("l2overip/refusals");
}

TEST_F(L2OverIpTest, SwitchModeNeedsACompleteConfiguration) {
    const std::string ports = "local_port = 1, 203.0.113.2\nremote_port = 2, 198.51.100.7\n";
    for (const std::string& file : {std::string("device = none\n"), std::string("device = eth1\n"),
                                    "device = eth1\n" + ports.substr(0, 28), "device = eth1\n" + ports,
                                    "mac_ttl = 9\ndevice = eth9\n" + ports}) {
        WriteFile(kFile, file);
        Mode("switch");
    }
    WriteFile(kFile, kComplete);
    support::Queue(kScript, {.status = 3});
    Mode("switch");
    ExpectTranscript("l2overip/switch_mode");
}

// A driver in switch mode gets every new configuration, and a new guard only when it took it.
TEST_F(L2OverIpTest, RunningDriver) {
    ShowReport("port-table");
    SetDriver("device = eth1\nmode = switch\n");
    support::Queue(kScript, {.status = 1});
    MacTtl("5");
    MacTtl("6");
    WriteFile(kGuard + ".d/x", "");
    unlink(kGuard.c_str());
    ASSERT_EQ(rename((kGuard + ".d").c_str(), kGuard.c_str()), 0); // a folder in the guard's place
    MacTtl("7");
    support::Queue(kScript, {.out = "up\n"});
    ShowReport("status");
    support::Queue(kScript, {.status = 2});
    for (const char* report : {"mac-address-table", "port-table", "mac-hash-stats", "clone-fabric-stats",
                               "vswitch-stats", "config", "nothing"})
        ShowReport(report);
    MakePassive();
    ShowReport("status");
    support::FillDisk("/mnt/main/etc");
    MacTtl("8");
    ExpectTranscript("l2overip/running_driver");
}

TEST_F(L2OverIpTest, SwitchedInterface) {
    EXPECT_FALSE(IsL2OverIpSwitchOn("eth1"));
    WriteFile(kFile, "mode = switch\ndevice = eth1\n");
    EXPECT_TRUE(IsL2OverIpSwitchOn("eth1"));
    EXPECT_FALSE(IsL2OverIpSwitchOn("eth0"));
    WriteFile("/etc/multi_disk_only", "L2OVERIP,needs a licence\n");
    WriteFile("/etc/licensed_services", "WIFI\n");
    EXPECT_FALSE(IsL2OverIpSwitchOn("eth1"));
}

} // namespace
} // namespace l2overip
