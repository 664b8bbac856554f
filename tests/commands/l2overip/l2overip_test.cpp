#include "commands/l2overip/commands.h"
#include "commands/l2overip/configuration.h"
#include "commands/l2overip/driver.h"
#include "tests/support/command_test.h"

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
        shown_file_ = kFile;
        support::Record(kScript);
        support::Record("/sbin/textpager.sh");
        WriteRecord("ETH0_IP 203.0.113.2 203.0.113.20\nETH0_MASK 255.255.255.0 255.255.255.0\n"
                    "ETH1_IP 192.168.1.1\nETH1.5_VLAN 5\nETH1.5_PARENT ETH1\nETH1.5_IP 192.168.5.1\n"
                    "ETH2_IP dhcp\nETH3_IP 192.168.3.255\nETH4_IP 192.168.4.1\n"
                    "ETH1.6_VLAN 6\nETH1.6_PARENT ETH1\nETH1.6_IP dhcp\nETH5_IP 255.1.1.1\n");
        WriteFile(kFile, kComplete);
    }

    // The driver's state file, on a file system of its own.
    static void SetDriver(const std::string& state) {
        const char* const mount = "mount -t tmpfs driver /proc/driver && mkdir /proc/driver/l2overip";
        ASSERT_EQ(support::RunShell(mount).status, 0);
        WriteFile("/proc/driver/l2overip/config", state);
    }
};

TEST_F(L2OverIpTest, EditsFromAnEmptyFile) {
    WriteFile(kFile, "");
    Type({"l2overip interface eth1", "l2overip interface eth1", "l2overip local port 01 203.0.113.20",
          "l2overip unsolicited-frames drop", "l2overip unsolicited-frames drop",
          "l2overip remote port 10 198.51.100.10", "l2overip remote port 9 198.51.100.9",
          "l2overip remote port 9 198.51.100.8", "l2overip mac-ttl 300"});
    EXPECT_TRUE(corvanshell::CheckGuardFile(kGuard.c_str(), kFile.c_str(), nullptr));
    Type({"l2overip mode switch", "l2overip mode switch", "l2overip remote port delete 10 < n",
          "l2overip remote port delete 10 < y", "l2overip remote port delete 10",
          "l2overip remote port delete 9", // the last one
          "l2overip mode off", "l2overip remote port delete 9 < y"});
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
    support::MakeVeth("eth1.6", "v1");
    ASSERT_EQ(
        support::RunShell("ip address add 10.5.0.1/24 dev ppp0 && ip address add 10.6.0.1/24 dev eth2 && "
                          "ip address add 10.7.0.1/24 dev eth1.6")
            .status,
        0);
    Type({"l2overip local port 5 10.0.0.1", "l2overip local port 5 10.5.0.1",
          "l2overip local port 5 192.168.1.1", "l2overip local port 5 192.168.5.1",
          "l2overip local port 5 10.6.0.1", "l2overip local port 5 10.7.0.1", // DHCP on a child VLAN
          "l2overip local port 5 192.168.3.255", "l2overip local port 5 255.1.1.1",
          "l2overip local port 5 192.168.3", "l2overip local port 2 192.168.4.1",
          "l2overip remote port 1 198.51.100.9", "l2overip remote port 3 203.0.113.2",
          "l2overip remote port 3 198.51.100.0", "l2overip remote port 3 230.1.1.1",
          "l2overip remote port 3 255.0.0.1", "l2overip remote port 3 240.0.0.1",
          "l2overip remote port 3 198.51.100.7", "l2overip remote port 3 \"198.51.100.7\nmode = switch\""});
    for (const char* device : {"", "device = eth1\n"}) {
        WriteFile(kFile, device + std::string("remote_port = 2, 192.168.4.1\n"));
        Type({"l2overip local port 5 192.168.4.1"});
    }
    // An address that is broadcast too, and known.
    WriteFile(kFile, "device = eth1\nremote_port = 2, 192.168.3.255\n");
    Type({"l2overip local port 5 192.168.3.255", "l2overip remote port 3 192.168.3.255"});
    EXPECT_THROW((void)IsBroadcastLike("10.0.0"), std::system_error);
    Type({"l2overip interface ppp1", "l2overip interface eth1;reboot",
          "l2overip mode \"switch\ndevice = eth0\""});
    WriteFile(kFile, "local_port = one\n");
    Type({"l2overip mac-ttl 9"});
    unlink(kFile.c_str());
    Type({"l2overip mac-ttl 9"});
    // The interfaces are not known.
    WriteFile(kFile, kComplete);
    WriteFile(path_list::local_settings, "");
    Type({"l2overip local port 5 203.0.113.20", "l2overip mode switch"});
    JoinCluster(1);
    Type({"l2overip mode switch"});
    JoinCluster(2);
    Type({"l2overip mode off"});
    ExpectTranscript("l2overip/refusals");
}

TEST_F(L2OverIpTest, SwitchModeNeedsACompleteConfiguration) {
    const std::string ports = "local_port = 1, 203.0.113.2\nremote_port = 2, 198.51.100.7\n";
    for (const std::string& file : {std::string("device = none\n"), std::string("device = eth1\n"),
                                    "device = eth1\n" + ports.substr(0, 28), "device = eth1\n" + ports,
                                    "mac_ttl = 9\ndevice = eth9\n" + ports}) {
        WriteFile(kFile, file);
        Type({"l2overip mode switch"});
    }
    WriteFile(kFile, kComplete);
    support::Queue(kScript, {.status = 3});
    Type({"l2overip mode switch"});
    ExpectTranscript("l2overip/switch_mode");
}

// A driver in switch mode gets every new configuration, and a new guard only when it took it.
TEST_F(L2OverIpTest, RunningDriver) {
    Type({"l2overip show port-table"});
    SetDriver("device = eth1\nmode = switch\n");
    support::Queue(kScript, {.status = 1});
    Type({"l2overip mac-ttl 5", "l2overip mac-ttl 6"});
    WriteFile(kGuard + ".d/x", "");
    unlink(kGuard.c_str());
    ASSERT_EQ(rename((kGuard + ".d").c_str(), kGuard.c_str()), 0); // a folder in the guard's place
    Type({"l2overip mac-ttl 7"});
    support::Queue(kScript, {.out = "up\n"});
    Type({"l2overip show status"});
    support::Queue(kScript, {.status = 2});
    Type({"l2overip show mac-address-table", "l2overip show port-table", "l2overip show mac-hash-stats",
          "l2overip show clone-fabric-stats", "l2overip show vswitch-stats", "l2overip show config"});
    Play("l2overip show nothing", [] { return Show("nothing"); });
    for (const int state : {1, 2}) {
        JoinCluster(state);
        Type({"l2overip show status   # state " + std::to_string(state)});
    }
    support::FillDisk("/mnt/main/etc");
    Type({"l2overip mac-ttl 8"});
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
