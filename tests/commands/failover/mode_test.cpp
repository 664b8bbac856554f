#include "commands/failover/mode.h"
#include "front/probes/cluster.h"
#include "platform/shell_tree.h"
#include "tests/commands/failover/failover_fixture.h"

namespace failover {
namespace {

using support::Queue;
using support::WriteFile;

// The call, with a terminal as its standard input where `input` was typed.
bool OnTerminal(const std::string& input, bool (*call)()) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
    const int slave = open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_EQ(write(master, input.data(), input.size()), static_cast<ssize_t>(input.size()));
    EXPECT_EQ(dup2(slave, STDIN_FILENO), STDIN_FILENO);
    const bool done = call();
    close(slave);
    close(master);
    return done;
}

class ClusterModeTest : public FailoverTest {
protected:
    ClusterModeTest() { WriteFile("/etc/single_only", "WIFI,one radio\nNTP\nBOGUS\n"); }

    static void Services(const std::string& local, const std::string& common) {
        WriteRecord(local);
        WriteProtected(path_list::common_settings, common);
    }
    void PlayCluster(const std::string& why) { Type({"failover config mode cluster   # " + why}); }
    // Two answers, one letter each.
    void PlayTyped(const std::string& typed) {
        Queue(kSearch, {.status = 1});
        Play("failover config mode cluster   # typed " + typed, [&] {
            return OnTerminal(typed.substr(0, 1) + "\n" + typed.substr(1) + "\n", EnterClusterMode);
        });
    }
};

TEST_F(ClusterModeTest, Cluster) {
    for (const char* script : {"/etc/init.d/ntp", "/etc/init.d/hostapd"})
        support::Record(script);
    JoinCluster(2);
    PlayCluster("already");
    WriteFile(path_list::velir_sk_nums, "FO_PARAMS=\"single\"\n");
    Services("WIFI on\n", "");
    PlayCluster("Wi-Fi");
    Services("", "DHCP_SERVER on\n");
    PlayCluster("DHCP server starts");
    Services("", "NTP on\n");
    WriteFile("/run/dhcp-server.pid", std::to_string(getpid()) + "\n");
    PlayCluster("DHCP server runs");
    unlink("/run/dhcp-server.pid");
    PlayCluster("daemon runs");
    Queue(kSearch, {.status = 1});
    PlayCluster("service enabled");
    Services("", "");
    Queue(kSearch, {.status = 1});
    Queue(kProgram, {.status = 1});
    PlayCluster("no switch");
    EXPECT_EQ(Shell::Get().Mode(), 0);
    PlayTyped("ny");
    PlayTyped("yn");
    EXPECT_EQ(Shell::Get().Mode(), 1);
    Queue("/etc/init.d/ntp", {.status = 4});
    PlayTyped("YY");
    WriteFile(path_list::local_settings, "WIFI on\n"); // against its guard
    PlayCluster("settings damaged");
    ExpectTranscript("failover/cluster_mode");
}

TEST_F(ClusterModeTest, Single) {
    const char* const quagga = "/etc/init.d/quagga";
    for (const char* program : {quagga, "/etc/init.d/vpn-snmpd"})
        support::Record(program);
    const auto play = [&](const std::string& why) { Type({"failover config mode single   # " + why}); };
    play("already");
    JoinCluster(1);
    Queue(kProgram, {.status = 1});
    play("no switch");
    play("quagga runs");
    Queue(quagga, {.out = "quiet\n", .status = 1});
    play("quagga sleeps");
    for (int i = 0; i < 2; ++i)
        Queue(quagga, {.status = 1});
    play("quagga stays asleep");
    JoinCluster(2);
    play("active node");
    // Each service by its script.
    const std::pair<const char*, const char*> services[] = {{"DHCP_RELAY", "isc-dhcp-relay"},
                                                            {"DHCP_SERVER", "isc-dhcp-server"},
                                                            {"DNS", "named"},
                                                            {"HTTPPROXY", "http_proxy.sh"},
                                                            {"L2TP", "xl2tpd"},
                                                            {"NTP", "ntp"},
                                                            {"PPP_SERVER", "pppd-server"},
                                                            {"SMTP_MODE", "postfix"},
                                                            {"UPS_MONITOR", "nut-client"},
                                                            {"WIFI", "hostapd"}};
    std::string names, flags;
    for (const auto& [name, script] : services) {
        support::Record(std::string("/etc/init.d/") + script);
        names += std::string(name) + "\n";
        flags += std::string(name) + " on\n";
    }
    Services(flags, flags);
    WriteFile("/etc/single_only", names);
    unlink("/etc/init.d/vpn-snmpd");
    play("every service, and no vpn-snmpd");
    WriteFile(path_list::local_settings, "WIFI on\n"); // against its guard
    play("settings damaged");
    ExpectTranscript("failover/single_mode");
}

// Through the shell's tree, by the reference appliance's own scripts.
TEST_F(ClusterModeTest, ThereAndBack) {
    unlink(kProgram);
    ASSERT_EQ(support::RunShell("cp '" SOURCE_FOLDER "/reference/rootfs/usr/sbin/failover' /sbin && "
                                "/etc/init.d/ntp start && /etc/init.d/hostapd start")
                  .status,
              0);
    Node root;
    std::string built; // the modes that the tree was built for
    Shell::Get().SetTree(&root, [&](TreeNode& node, int mode) {
        built += std::to_string(mode);
        node.add(std::make_unique<Node>()).set_action([mode, &built](const ShellArguments&) {
            const bool done = mode == 0 ? EnterClusterMode() : EnterSingleMode();
            built += mode == 0 ? "<" : ">"; // the action is still there behind the rebuilding
            return done;
        });
    });
    Shell::Get().RebuildTree();
    const auto type = [&] {
        ShellArguments none;
        return root.parse_tokens({"mode"}, 0, none);
    };
    Queue(kSearch, {.status = 1});
    Play("to cluster mode", type);
    EXPECT_EQ(GetClusterMode(), 1);
    // The daemon is not started, so the node is passive, and its routing daemon sleeps.
    Services("WIFI on\n", "NTP on\nDNS on\n");
    Play("to single mode", type);
    EXPECT_EQ(GetClusterMode(), 0);
    EXPECT_EQ(built, "01<0>");
    EXPECT_EQ(root.stages().size(), 1U);
    Shell::Get().SetTree(nullptr, {});
    ExpectTranscript("failover/there_and_back");
}

} // namespace
} // namespace failover
