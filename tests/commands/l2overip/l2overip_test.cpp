#include "commands/l2overip/commands.h"
#include "commands/l2overip/configuration.h"
#include "commands/l2overip/driver.h"
#include "tests/commands/interfaces/command_fixture.h"

#include <system_error>

namespace l2overip {
namespace {

using support::Output;
using support::ReadFile;
using support::WriteFile;

constexpr const char* kFile = "/mnt/main/etc/l2overip.conf";
constexpr const char* kGuard = "/mnt/main/etc/l2overip-config.crg";
constexpr const char* kScript = "/usr/sbin/l2overip.sh";

const std::string kComplete = "mode = off\nmac_ttl = 300\ndevice = eth1\nlocal_port = 1, 203.0.113.2\n"
                              "remote_port = 2, 198.51.100.7\n";

class L2OverIpTest : public CommandTest {
protected:
    L2OverIpTest() {
        support::Record(kScript);
        WriteRecord("ETH0_IP 203.0.113.2 203.0.113.20\nETH0_MASK 255.255.255.0 255.255.255.0\n"
                    "ETH1_IP 192.168.1.1\nETH1.5_VLAN 5\nETH1.5_PARENT ETH1\nETH1.5_IP 192.168.5.1\n"
                    "ETH2_IP dhcp\nETH3_IP 192.168.3.255\nETH4_IP 192.168.4.1\n");
        WriteFile(kFile, kComplete);
    }

    // The driver's state file, on a file system of its own.
    static void SetDriver(const std::string& state) {
        ASSERT_EQ(
            support::RunShell("mount -t tmpfs driver /proc/driver && mkdir /proc/driver/l2overip").status, 0);
        WriteFile("/proc/driver/l2overip/config", state);
    }
    static support::LogLine Read() { return {6, "<L2OverIP> Reading config: OK"}; }
    static support::LogLine Written() { return {6, "<L2OverIP> Writing config: OK"}; }

    // An edit that is done, with the file that comes of it.
    void ExpectEdit(const std::function<bool()>& call, const std::string& prefix, const std::string& file) {
        SCOPED_TRACE(prefix);
        Expect(call, {.output = {": OK\n", ""}, .log = {Read(), Written(), {6, prefix + ": OK"}}});
        EXPECT_EQ(ReadFile(kFile), file);
    }
    void ExpectRefused(const std::function<bool()>& call, const std::string& prefix,
                       const std::string& outcome) {
        SCOPED_TRACE(outcome);
        ExpectRefusal(call, {.output = {"", outcome + "\n"}, .log = {Read(), {3, prefix + outcome}}});
    }
};

TEST_F(L2OverIpTest, EditsFromAnEmptyFile) {
    WriteFile(kFile, "");
    ExpectEdit([] { return SetInterface("eth1"); }, "<L2OverIP> Command set interface: ", "device = eth1\n");
    ExpectEdit([] { return SetLocalPort("01", "203.0.113.20"); }, "<L2OverIP> Command set local port",
               "device = eth1\nlocal_port = 1, 203.0.113.20\n");
    const std::string local = "device = eth1\nunsolicited_frames = drop\nlocal_port = 1, 203.0.113.20\n";
    ExpectEdit([] { return SetUnsolicitedFrames("drop"); }, "<L2OverIP> Command set unsolicited frames",
               local);
    const std::string set_remote = "<L2OverIP> Command: set remote port";
    ExpectEdit([] { return SetRemotePort("10", "198.51.100.10"); }, set_remote,
               local + "remote_port = 10, 198.51.100.10\n");
    ExpectEdit([] { return SetRemotePort("9", "198.51.100.9"); }, set_remote,
               local + "remote_port = 9, 198.51.100.9\nremote_port = 10, 198.51.100.10\n");
    ExpectEdit([] { return SetRemotePort("9", "198.51.100.8"); }, set_remote,
               local + "remote_port = 9, 198.51.100.8\nremote_port = 10, 198.51.100.10\n");
    ExpectEdit([] { return SetMacTtl("300"); }, "<L2OverIP> Command set MAC TTL",
               "mac_ttl = 300\n" + local +
                   "remote_port = 9, 198.51.100.8\nremote_port = 10, 198.51.100.10\n");
    EXPECT_TRUE(corvanshell::CheckGuardFile(kGuard, kFile, nullptr));
    WriteFile(kFile, "");
    EXPECT_FALSE(corvanshell::CheckGuardFile(kGuard, kFile, nullptr));
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

TEST_F(L2OverIpTest, PortRefusals) {
    SetDriver("mode = off\n");
    EXPECT_EQ(
        support::RunShell("ip link add ppp0 type veth peer name v1 && ip address add 10.5.0.1/24 dev ppp0 &&"
                          "ip link add eth2 type veth peer name v2 && ip address add 10.6.0.1/24 dev eth2")
            .status,
        0);
    const char* local[][3] = {
        {"5", "10.0.0.1", ": specified address is not assigned to a local interface"},
        {"5", "10.5.0.1", ": specified address is assigned to the ppp interface"},
        {"5", "192.168.1.1", ": specified address is assigned to the internal interface"},
        {"5", "192.168.5.1",
         ": specified address is assigned to the child VLAN interface of the internal interface"},
        {"5", "10.6.0.1", ": specified address is assigned to the DHCP interface"},
        {"2", "192.168.4.1", ": this num is already assigned to remote port"},
        {"5", "192.168.3.255", ": Local port address can not be broadcast"},
    };
    for (const auto& [number, address, outcome] : local)
        ExpectRefused([&] { return SetLocalPort(number, address); }, "<L2OverIP> Command set local port",
                      outcome);
    const char* remote[][3] = {
        {"1", "198.51.100.9", ": this port num is already set to local port"},
        {"3", "203.0.113.2", ": this address is already set to local port"},
        {"3", "198.51.100.0", ": Remote port address can not be broadcast"},
        {"3", "230.1.1.1", ": Remote port address can not be broadcast"},
        {"3", "198.51.100.7", ": this remote port IP is already present in config"},
    };
    for (const auto& [number, address, outcome] : remote)
        ExpectRefused([&] { return SetRemotePort(number, address); }, "<L2OverIP> Command: set remote port",
                      outcome);
    WriteFile(kFile, "remote_port = 2, 192.168.4.1\n");
    ExpectRefused([] { return SetLocalPort("5", "192.168.4.1"); }, "<L2OverIP> Command set local port",
                  ": internal interface is not set");
    WriteFile(kFile, "device = eth1\nremote_port = 2, 192.168.4.1\n");
    ExpectRefused([] { return SetLocalPort("5", "192.168.4.1"); }, "<L2OverIP> Command set local port",
                  ": this IP is already assigned to remote port ");
    EXPECT_THROW((void)IsBroadcastLike("10.0.0"), std::system_error);
}

TEST_F(L2OverIpTest, OtherRefusals) {
    ExpectRefused([] { return SetInterface("eth1"); },
                  "<L2OverIP> Command set interface: ", " already set to eth1");
    ExpectRefusal(
        [] { return SetInterface("ppp1"); },
        {.output = {"", "ppp1 on the ppp interface, you can not assign an L2 packet interception\n"},
         .log = {{3, "<L2OverIP> Command set interface: ppp1 on the ppp interface, you can not assign an "
                     "L2 packet interception"}}});
    ExpectRefusal([] { return SetInterface("eth1;reboot"); },
                  {.output = {"", "wrong interface: \"eth1;reboot\"\n"}});
    ExpectRefusal([] { return SetRemotePort("2", "198.51.100.7\nmode = switch"); },
                  {.output = {"", "wrong address: \"198.51.100.7?mode = switch\"\n"}});
    ExpectRefusal([] { return SetMode("switch\ndevice = eth0"); },
                  {.output = {"", "wrong mode: \"switch?device = eth0\"\n"}});
    ExpectRefused([] { return SetMode("off"); }, "<L2OverIP> Command set mode <off>",
                  "This mode is already set.");
    ExpectRefused([] { return DeleteRemotePort("7"); }, "<L2OverIP> Command delete remote port ",
                  " - port not found.");
    WriteFile(kFile, kComplete + "unsolicited_frames = drop\n");
    ExpectRefused([] { return SetUnsolicitedFrames("drop"); }, "<L2OverIP> Command set unsolicited frames",
                  ": this unsolicited frames mode is already set");
    unlink(kFile);
    ExpectRefusal([] { return SetMacTtl("9"); },
                  {.output = {"", "Reading config failed: Failed (No such file or directory)\n: Failed\n"},
                   .log = {{3, "<L2OverIP> Reading config: Failed (No such file or directory)"},
                           {3, "<L2OverIP> Command set MAC TTL: Failed"}}});
    WriteFile(path_list::velir_sk_nums, "FO_PARAMS=\"cluster\"\n");
    WriteFile("/var/spool/corvan/failoverstat", "state\n1\n");
    const std::string passive = ": Device is in passive mode, mode setting couldn't be done.";
    ExpectRefusal(
        [] { return SetMode("switch"); },
        {.output = {"", passive + "\n"}, .log = {{3, "<L2OverIP> Command set mode <switch>" + passive}}});
}

TEST_F(L2OverIpTest, SwitchModeNeedsACompleteConfiguration) {
    const char* cases[][2] = {
        {"device = none\n", ": Interface is empty"},
        {"device = eth1\n", ": Local port num is empty"},
        {"device = eth1\nlocal_port = 1, 203.0.113.2\n", ": At least one remote port is required"},
        {"device = eth1\nlocal_port = 1, 203.0.113.2\nremote_port = 2, 198.51.100.7\n", ": MAC-TTL is empty"},
    };
    const std::string prefix = "<L2OverIP> Command set mode <switch>";
    for (const auto& [file, fault] : cases) {
        WriteFile(kFile, file);
        ExpectRefusal([] { return SetMode("switch"); },
                      {.output = {"", fault + std::string("\nError in config, please correct\n: Failed\n")},
                       .log = {Read(),
                               {3, std::string("<L2OverIP> Check config correctness") + fault},
                               {3, prefix + ": Failed"}}});
    }
    WriteFile(kFile, kComplete + "device = eth9\n");
    WriteFile(kFile,
              "mac_ttl = 9\ndevice = eth9\nlocal_port = 1, 203.0.113.2\nremote_port = 2, 198.51.100.7\n");
    const support::LogLine checked = {6, "<L2OverIP> Check config correctness: All OK"};
    ExpectRefusal(
        [] { return SetMode("switch"); },
        {.output = {"", "eth9: the interface does not exist; please set the valid device\n: Failed\n"},
         .log = {Read(), checked, {3, prefix + ": Failed"}}});

    WriteFile(kFile, kComplete);
    const std::string configure = kScript + std::string(" configure");
    const support::LogLine ran = {6, "<L2OverIP> Script command: <configure>"};
    Expect([] { return SetMode("switch"); }, {.output = {": OK\n", ""},
                                              .log = {Read(), checked, Written(), ran, {6, prefix + ": OK"}},
                                              .commands = {configure}});
    EXPECT_EQ(ReadFile(kFile), "mode = switch" + kComplete.substr(10));

    WriteFile(kFile, kComplete);
    support::Queue(kScript, {.status = 3});
    Expect([] { return SetMode("switch"); },
           {.done = false,
            .output = {"", ": Failed\n"},
            .log = {Read(),
                    checked,
                    Written(),
                    {3, "<L2OverIP> Script command: <configure> :Failed, exit code 3"},
                    {3, prefix + ": Failed"}},
            .commands = {configure}});
}

// A driver in switch mode gets every new configuration, and a new guard only when it took it.
TEST_F(L2OverIpTest, RunningDriverIsReconfigured) {
    SetDriver("device = eth1\nmode = switch\n");
    const std::string configure = kScript + std::string(" configure");
    const std::string prefix = "<L2OverIP> Command set MAC TTL";
    support::Queue(kScript, {.status = 1});
    Expect([] { return SetMacTtl("5"); },
           {.done = false,
            .output = {"", "Error reconfiguring l2overip\n: Failed\n"},
            .log = {Read(),
                    Written(),
                    {3, "<L2OverIP> Script command: <configure> :Failed, exit code 1"},
                    {3, "<L2OverIP> Reconfigure driver: Error reconfiguring l2overip"},
                    {3, prefix + ": Failed"}},
            .commands = {configure}});
    EXPECT_NE(ReadFile(kFile).find("mac_ttl = 5\n"), std::string::npos);
    EXPECT_FALSE(support::Exists(kGuard));
    Expect([] { return SetMacTtl("6"); }, {.output = {": OK\n", ""},
                                           .log = {Read(),
                                                   Written(),
                                                   {6, "<L2OverIP> Script command: <configure>"},
                                                   {6, "<L2OverIP> Reconfigure driver: OK"},
                                                   {6, prefix + ": OK"}},
                                           .commands = {configure}});
    EXPECT_TRUE(support::Exists(kGuard));

    WriteFile(std::string(kGuard) + ".d/x", "");
    unlink(kGuard);
    ASSERT_EQ(rename((std::string(kGuard) + ".d").c_str(), kGuard), 0); // a folder in the guard's place
    EXPECT_EQ(
        support::Capture([] { EXPECT_FALSE(SetMacTtl("8")); }).err,
        "Failed to save the checksum for file l2overip.conf. Your files may appear corrupt.\n: Failed\n");
}

TEST_F(L2OverIpTest, Show) {
    const std::string not_configured = ": Error (driver not configured)";
    ExpectRefusal([] { return Show("port-table"); },
                  {.output = {"", not_configured + "\n"},
                   .log = {{3, "<L2OverIP> Command show port table" + not_configured}}});
    SetDriver("mode = switch\n");
    support::Queue(kScript, {.out = "up\n"});
    Expect([] { return Show("status"); }, {.output = {"up\n: OK\n", ""},
                                           .log = {{6, "<L2OverIP> Script command: <show status>"},
                                                   {6, "<L2OverIP> Command show status: OK"}},
                                           .commands = {kScript + std::string(" show status")}});
    support::Queue(kScript, {.status = 2});
    Expect([] { return Show("mac-address-table"); },
           {.done = false,
            .output = {"", ": Failed\n"},
            .log = {{3, "<L2OverIP> Script command: <show mac-address-table> :Failed, exit code 2"},
                    {3, "<L2OverIP> Command show virtual switch MAC address table: Failed"}},
            .commands = {kScript + std::string(" show mac-address-table")}});
    support::Record("/sbin/textpager.sh");
    Expect([] { return Show("config"); }, {.output = {": OK\n", ""},
                                           .log = {{6, "<L2OverIP> Command show config: OK"}},
                                           .commands = {"/sbin/textpager.sh " + std::string(kFile)}});
    WriteFile(path_list::velir_sk_nums, "FO_PARAMS=\"cluster\"\n");
    WriteFile("/var/spool/corvan/failoverstat", "state\n1\n");
    EXPECT_FALSE(L2OverIpDriverConfigured());
}

TEST_F(L2OverIpTest, DeleteRemotePort) {
    const std::string prefix = "<L2OverIP> Command delete remote port ";
    const std::string question =
        "Do you want to delete remote port number 2 from L2OverIP configuration? [y/N] ";
    ExpectRefusal([] { return DeleteRemotePort("2"); },
                  {.output = {question + "Command `remote port delete` terminated by user.\n", ""},
                   .log = {Read(), {3, prefix + "- terminated by user."}}},
                  "n\n");
    WriteFile(kFile, "mode = switch\nremote_port = 2, 198.51.100.7\n");
    ExpectRefused([] { return DeleteRemotePort("2"); }, prefix,
                  ": cannot delete last remote port when L2OverIP is configured.");
    WriteFile(kFile, "mode = off\nremote_port = 2, 198.51.100.7\n");
    Expect([] { return DeleteRemotePort("2"); },
           {.output = {question + ": OK\n", ""},
            .log = {Read(), {6, prefix + "- running."}, Written(), {6, prefix + ": OK"}}},
           "y\n");
    EXPECT_EQ(ReadFile(kFile), "mode = off\n");
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
