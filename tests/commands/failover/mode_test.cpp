#include "commands/failover/mode.h"
#include "front/probes/cluster.h"
#include "platform/shell_tree.h"
#include "tests/commands/failover/failover_fixture.h"

namespace failover {
namespace {

using support::Exists;
using support::Queue;
using support::WriteFile;

constexpr const char* kSearch = "/usr/sbin/start-stop-daemon";
const std::string kSearched = std::string(kSearch) + " -K -t -x /sbin/failoverd";
const std::string kNote = "Note: the following services are NOT allowed to run in cluster mode:\n"
                          "\tBOGUS\n\tNTP\n\tWIFI\n"
                          "If any of them are currently running, please stop them\n";
const std::string kStopping = "Switching to cluster mode. Attempt to stop the following service: ";
const std::string kStarting = "Switching to single mode. Attempt to start the following service: ";
const std::string kAsked = "Do you want to switch to the cluster mode? [y/N] ";
const std::string kAskedToStop =
    "Do you want to stop all services that are not allowed to run in cluster mode now? [y/N] ";
const support::LogLine kModeLog = {6, "<F_MOD> Command failover config mode"};
const support::LogLine kSingleLog = {6, "command: failover config mode single"};

class ModeTest : public FailoverTest {
protected:
    ModeTest() {
        WriteFile("/etc/single_only", "WIFI,one radio\nNTP\nBOGUS\n");
        support::Record(kSearch);
    }
    static void Services(const std::string& local, const std::string& common = "DHCP_SERVER off\n") {
        WriteRecord(local);
        WriteProtected(path_list::common_settings, common);
    }
    void ExpectRefused(const std::string& error, const std::vector<std::string>& commands = {}) {
        SCOPED_TRACE(error);
        ExpectRefusal(EnterClusterMode, {.output = {"", error}, .commands = commands});
    }
};

TEST_F(ModeTest, ClusterRefusals) {
    JoinCluster(2);
    ExpectRefused("Failover is already in cluster mode. Command ignored.\n");
    WriteFile(path_list::velir_sk_nums, "FO_PARAMS=\"single\"\n");
    Services("WIFI on\n");
    ExpectRefused("WiFi service is in use.\nIn the cluster mode the WiFi service should be disabled.\n");
    Services("", "DHCP_SERVER on\n");
    ExpectRefused("The DHCP server has been configured to start automatically.\n"
                  "In the cluster mode the DHCP server should be disabled\n");
    Services("");
    WriteFile("/run/dhcp-server.pid", std::to_string(getpid()) + "\n");
    ExpectRefused("The DHCP server is running.\nStop it before switching to the cluster mode.\n");
    unlink("/run/dhcp-server.pid");
    ExpectRefused("Failover daemon is running. Stop it before switching to the cluster mode.\n", {kSearched});
    Services("", "NTP on\n");
    Queue(kSearch, {.status = 1});
    ExpectRefusal(
        EnterClusterMode,
        {.output =
             {"\tNTP\n",
              "The following services are currently enabled. Turn them off before enabling cluster mode\n"},
         .commands = {kSearched}});
    Services("");
    Queue(kSearch, {.status = 1});
    ExpectRefusal([] { return OnTerminal("n\n", EnterClusterMode); },
                  {.output = {kAsked, ""}, .commands = {kSearched}});
    support::Record(kProgram);
    Queue(kProgram, {.status = 1});
    Queue(kSearch, {.status = 1});
    ExpectRefusal(EnterClusterMode,
                  {.output = {"stdin is not a terminal. Switching to cluster mode without confirmation.\n",
                              "failed to run /sbin/failover install\n"},
                   .commands = {kSearched, "/sbin/failover install"}});
    WriteFile(path_list::local_settings, "WIFI on\n"); // against its guard
    ExpectRefusal(EnterClusterMode, {.output = {"", "failed to read network settings, nothing is changed\n"},
                                     .log = {kDamagedRecord}});
}

// The services on their way: the small scripts' own marks.
TEST_F(ModeTest, ThereAndBackWithoutATerminal) {
    ASSERT_EQ(support::RunShell("/etc/init.d/ntp start && /etc/init.d/hostapd start").status, 0);
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
    Expect(type,
           {.output = {"stdin is not a terminal. Switching to cluster mode without confirmation.\n" + kNote +
                           "stdin is not a terminal. Stopping services without confirmation.\n" + kStopping +
                           "BOGUS\n" + kStopping + "NTP\n" + kStopping + "WIFI\n",
                       ""},
            .log = {kModeLog, {6, "BOGUS stop: no script"}, {6, "NTP stop: OK"}, {6, "WIFI stop: OK"}},
            .commands = {kSearched}});
    EXPECT_EQ(GetClusterMode(), 1);
    EXPECT_EQ(Shell::Get().Mode(), 1);
    EXPECT_FALSE(Exists("/run/started-ntp") || Exists("/run/started-hostapd"));

    // Not started yet, so passive: the routing daemon sleeps.
    Services("WIFI on\n", "NTP on\nDNS on\n");
    unlink("/etc/init.d/hostapd");
    Expect(type, {.done = false,
                  .output = {kStarting + "NTP\n" + kStarting + "WIFI\n", "failed to start quagga\n"},
                  .log = {kSingleLog,
                          {6, "NTP start: failed, exit status 127"},
                          {6, "WIFI start: failed, exit status 127"},
                          kModeLog},
                  .commands = {std::string(kSearch) + " -K -q -o -R 5 -x /usr/sbin/snmpd"}});
    EXPECT_EQ(GetClusterMode(), 0);
    EXPECT_EQ(Shell::Get().Mode(), 0);
    EXPECT_EQ(built, "01<0>");
    EXPECT_EQ(root.stages().size(), 1U);
    Shell::Get().SetTree(nullptr, {});
}

TEST_F(ModeTest, QuestionsOnATerminal) {
    support::Record(kProgram);
    for (const char* script : {"ntp", "hostapd"})
        support::Record(std::string("/etc/init.d/") + script);
    const std::vector<std::string> install = {kSearched, "/sbin/failover install"};
    Queue(kSearch, {.status = 1});
    Expect([] { return OnTerminal("y\nno\n", EnterClusterMode); },
           {.output = {kAsked + kNote + kAskedToStop + "You have cancelled services stopping.\n", ""},
            .log = {kModeLog, {6, "User cancelled services stopping."}},
            .commands = install});
    EXPECT_EQ(Shell::Get().Mode(), 1);
    Queue(kSearch, {.status = 1});
    Queue("/etc/init.d/ntp", {.status = 4});
    Expect(
        [] { return OnTerminal("yes\nY\n", EnterClusterMode); },
        {.output = {kAsked + kNote + kAskedToStop + "You have approved services stopping. Proceeding...\n" +
                        kStopping + "BOGUS\n" + kStopping + "NTP\n" + kStopping + "WIFI\n",
                    ""},
         .log = {kModeLog,
                 {6, "User approved services stopping. Proceeding..."},
                 {6, "BOGUS stop: no script"},
                 {6, "NTP stop: failed, exit status 4"},
                 {6, "WIFI stop: OK"}},
         .commands = {kSearched, "/sbin/failover install", "/etc/init.d/ntp stop",
                      "/etc/init.d/hostapd stop"}});
}

TEST_F(ModeTest, SingleModeCommands) {
    const std::string quagga = "/etc/init.d/quagga";
    const std::string agent = "/etc/init.d/vpn-snmpd";
    for (const std::string& program : {std::string(kProgram), quagga, agent})
        support::Record(program);
    WriteFile(path_list::velir_sk_nums, "FO_PARAMS=\"single\"\n");
    ExpectRefusal(EnterSingleMode, {.output = {"", "Failover is already in single mode. Command ignored.\n"},
                                    .log = {kSingleLog}});
    const std::string leave = "/sbin/failover uninstall";
    JoinCluster(1);
    Queue(kProgram, {.status = 1});
    ExpectRefusal(EnterSingleMode, {.output = {"", "failed to run /sbin/failover uninstall\n"},
                                    .log = {kSingleLog},
                                    .commands = {quagga + " is-running", leave}});
    const Log log = {kSingleLog, kModeLog};
    Expect(EnterSingleMode, {.log = log, .commands = {quagga + " is-running", leave, agent + " restart"}});
    Queue(quagga, {.out = "quiet\n", .status = 1});
    Expect(EnterSingleMode,
           {.log = log, .commands = {quagga + " is-running", leave, quagga + " start", agent + " restart"}});
    JoinCluster(2);
    Expect(EnterSingleMode, {.log = log, .commands = {leave, agent + " restart"}});
}

} // namespace
} // namespace failover
