#include "commands/interfaces/classes.h"
#include "commands/interfaces/vlans.h"
#include "tests/commands/interfaces/interfaces_fixture.h"

namespace interfaces {
namespace {

class VlansTest : public InterfacesTest {
protected:
    // The commands by their lines.
    void Access(const std::string& name) {
        Play("inet ifconfig " + name + " class access", [&] { return SetAccessClass(name); });
    }
    void Trunk(const std::string& name, const std::string& input = "") {
        Play(
            "inet ifconfig " + name + " class trunk", [&] { return SetTrunkClass(name); }, input);
    }
    void Add(const std::string& name, unsigned long id) {
        support::Queue("/sbin/ifconfig", {.out = "header\nlo\n"});
        Play("inet ifconfig " + name + " vlan add " + std::to_string(id), [&] { return AddVlan(name, id); });
    }
    void Delete(const std::string& name, const std::string& id) {
        Play("inet ifconfig " + name + " vlan delete " + id, [&] { return DeleteVlan(name, id); });
    }
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
    static void Switch(const std::string& device) {
        support::WriteFile("/mnt/main/etc/l2overip.conf", "mode = switch\ndevice = " + device + "\n");
    }
};

TEST_F(VlansTest, Classes) {
    PlayWithFailures(
        "inet ifconfig eth1 class trunk", [] { return SetTrunkClass("eth1"); }, "y\n");
    Trunk("eth1", "n\n");
    Trunk("eth2", "y\n");
    Trunk("eth4"); // asks nothing and runs the check alone
    Trunk("eth5");
    Trunk("eth9");
    Access("eth9");
    Access("eth5");
    PlayWithFailures("inet ifconfig eth4 class access", [] { return SetAccessClass("eth4"); }, "",
                     {{"/sbin/ifclass_check.sh", "a remark\n"}});
    Access("eth0");
    Switch("eth1");
    Trunk("eth1");
    unlink("/mnt/main/etc/l2overip.conf");
    GiveToDhcp("eth0", "eth1");
    Trunk("eth1");
    Trunk("eth0");
    ExpectTranscript("interfaces/classes");
}

TEST_F(VlansTest, AddVlan) {
    WriteVlans("eth3.8         | 8  | eth3\neth13.9        | 9  | eth13\n");
    PlayWithFailures("inet ifconfig eth3 vlan add 8", [] { return AddVlan("eth3", 8); }, "",
                     {{"/sbin/ifconfig", "header\nlo\n"}});
    support::Queue("/sbin/ip", {.out = "RTNETLINK answers: File exists\n", .status = 2});
    Add("eth3", 9);
    Add("eth3", 10); // the kernel does not list it
    Add("eth3", 5);
    Add("eth1", 10);
    support::Queue("/sbin/ifconfig", {.out = std::string(400, '\n')});
    Add("eth3", 10);
    ExpectTranscript("interfaces/vlan_add");
}

TEST_F(VlansTest, DeleteVlan) {
    const std::string row = "eth3.5         | 5  | eth3\n";
    Delete("eth3", "5"); // no VLAN list at all
    WriteVlans(row);
    PlayWithFailures("inet ifconfig eth3 vlan delete 5", [] { return DeleteVlan("eth3", "5"); });
    Delete("eth3", "6");
    Delete("eth1", "5");
    AlterEntry("eth3.5", [](auto& entry) { entry.parent = "eth30"; }); // whose name begins the same
    Delete("eth3", "5");
    AlterEntry("eth3.5", [](auto& entry) { entry.parent = "eth3"; });
    Delete("eth3", "5;reboot");
    Switch("eth3.5");
    Delete("eth3", "5");
    unlink("/mnt/main/etc/l2overip.conf");
    GiveToDhcp("eth3.5", "eth9");
    support::WriteFile("/run/dhcp-server.pid", std::to_string(getpid()));
    Delete("eth3", "5");
    GiveToDhcp("eth9", "eth3.5");
    Delete("eth3", "5");
    GiveToDhcp("eth9", "eth9");
    // The kernel still lists the interface here, so the comment goes when the list is empty.
    WriteVlans("");
    support::WriteFile("/sbin/ip", "#!/bin/sh\necho > /proc/net/vlan/config\n", 0755);
    WriteVlans(row);
    Delete("eth3", "5");
    ExpectTranscript("interfaces/vlan_delete");
}

TEST_F(VlansTest, Comments) {
    Play("inet vlan 12 comment add", [] { return AddVlanComment("12", "second floor, \"guests\""); });
    Play("inet vlan 12 comment add", [] { return AddVlanComment("12", "x\nETH0_UP 0"); });
    Play("inet vlan 12 comment delete", [] { return DeleteVlanComment("12"); });
    Play("inet vlan x comment delete", [] { return DeleteVlanComment("x"); });
    ExpectTranscript("interfaces/vlan_comments");
}

} // namespace
} // namespace interfaces
