#include "tests/commands/interfaces/interfaces_fixture.h"

namespace interfaces {
namespace {

class VlansTest : public InterfacesTest {
protected:
    // The kernel's list of VLAN interfaces. This kernel may have none, so /proc becomes a folder of links.
    static void WriteVlans(const std::string& rows) {
        ASSERT_EQ(support::RunShell(
                      "[ -d /proc/net/vlan ] || { mkdir /tmp/proc && mount --rbind /proc /tmp/proc && "
                      "mount -t tmpfs proc /proc && ln -s /tmp/proc/* /proc && rm /proc/net && "
                      "mkdir -p /proc/net/vlan && ln -s /tmp/proc/self/net/* /proc/net; }")
                      .status,
                  0);
        support::WriteFile("/proc/net/vlan/config",
                           "VLAN Dev name    | VLAN ID\nName-Type: VLAN_NAME_TYPE_RAW_PLUS_VID_NO_PAD\n" +
                               rows);
    }
};

TEST_F(VlansTest, Classes) {
    Type({"! inet ifconfig eth1 class trunk < y", "inet ifconfig eth1 class trunk < n",
          "inet ifconfig eth2 class trunk < y",
          "inet ifconfig eth4 class trunk", // asks nothing and runs the check alone
          "inet ifconfig eth5 class trunk", "inet ifconfig eth9 class trunk",
          "inet ifconfig eth9 class access", "inet ifconfig eth5 class access"});
    answers_ = {{"/sbin/ifclass_check.sh", {"a remark\n"}}};
    AlterEntry("eth0", [](auto& entry) { entry.alias_addresses = {"10.7.0.1"}; });
    Type({"! inet ifconfig eth4 class access", "inet ifconfig eth0 class access"});
    Switch("eth1");
    Type({"inet ifconfig eth1 class trunk"});
    unlink("/mnt/main/etc/l2overip.conf");
    GiveToDhcp("eth0", "eth1");
    Type({"inet ifconfig eth1 class trunk", "inet ifconfig eth0 class trunk"});
    ExpectTranscript("interfaces/classes");
}

TEST_F(VlansTest, AddVlan) {
    WriteVlans("eth30.8        | 8  | eth30\neth3.8         | 8  | eth3\n");
    answers_ = {{"/sbin/ifconfig", {"header\nlo\n"}}};
    Type({"! inet ifconfig eth3 vlan add 8"});
    support::Queue("/sbin/ip", {.out = "RTNETLINK answers: File exists\n", .status = 2});
    Type({"inet ifconfig eth3 vlan add 9", "inet ifconfig eth3 vlan add 10", // the kernel does not list it
          "inet ifconfig eth3 vlan add 5", "inet ifconfig eth1 vlan add 10"});
    support::Queue("/sbin/ifconfig", {.out = std::string(400, '\n')});
    Type({"inet ifconfig eth3 vlan add 10"});
    AlterEntry("eth3", [](auto& entry) { entry.up = false; });
    AlterEntry("eth1", [](auto& entry) { entry.interface_class = "trunk"; });
    Type({"inet ifconfig eth3 vlan add 8", "inet ifconfig eth1 vlan add 8"}); // an ID is used once
    ExpectTranscript("interfaces/vlan_add");
}

TEST_F(VlansTest, DeleteVlan) {
    const std::string row = "eth3.5         | 5  | eth3\n";
    Type({"inet ifconfig eth3 vlan delete 5"}); // no VLAN list at all
    WriteVlans(row);
    Type({"! inet ifconfig eth3 vlan delete 5", "inet ifconfig eth3 vlan delete 6",
          "inet ifconfig eth1 vlan delete 5", "inet ifconfig eth3 vlan delete 5;reboot"});
    AlterEntry("eth3.5", [](auto& entry) { entry.parent = "eth30"; }); // the list's eth30 begins the same
    Type({"inet ifconfig eth3 vlan delete 5"});
    AlterEntry("eth3.5", [](auto& entry) { entry.parent = "eth3"; });
    Switch("eth3.5");
    Type({"inet ifconfig eth3 vlan delete 5"});
    unlink("/mnt/main/etc/l2overip.conf");
    GiveToDhcp("eth3.5", "eth9");
    support::WriteFile("/run/dhcp-server.pid", std::to_string(getpid()));
    Type({"inet ifconfig eth3 vlan delete 5"});
    GiveToDhcp("eth9", "eth3.5");
    Type({"inet ifconfig eth3 vlan delete 5"});
    unlink("/run/dhcp-server.pid");
    GiveToDhcp("eth3.5", "eth9"); // the server may lose an interface that does not go down
    // The kernel still lists the interface here, so the comment goes when the list is empty.
    support::WriteFile("/sbin/ip", "#!/bin/sh\necho > /proc/net/vlan/config\n", 0755);
    Type({"inet ifconfig eth3 vlan delete 5"});
    ExpectTranscript("interfaces/vlan_delete");
}

TEST_F(VlansTest, Comments) {
    Type({"inet vlan 12 comment add \"second floor, \\\"guests\\\"\"",
          "inet vlan 12 comment add \"x\nETH0_UP 0\"", "inet vlan 12 comment add \"  roof \"",
          "inet vlan 12 comment add \"  \"", "inet vlan 12 comment delete", "inet vlan x comment delete"});
    ExpectTranscript("interfaces/vlan_comments");
}

} // namespace
} // namespace interfaces
