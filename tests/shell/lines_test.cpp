#include "tests/shell/shell_fixture.h"
#include "tests/shell/terminal.h"

namespace {

using support::Daemon;

class LinesTest : public ShellTest {};

class FamilyTest : public ShellTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(FamilyTest, ActionsAreReached) {
    ExpectSession(GetParam());
}
INSTANTIATE_TEST_SUITE_P(Sessions, FamilyTest,
                         ::testing::Values("cluster", "dhcp", "interfaces", "routing", "services"),
                         [](const auto& name) { return name.param; });

TEST_F(LinesTest, RunsEndAsTheirLines) {
    ExpectSession("runs");
}

TEST_F(LinesTest, WrongLinesDoNothing) {
    const std::vector<std::string> settings = {"/etc", "/mnt", "/var/lib"};
    const support::Snapshot before = support::TakeSnapshot(settings);
    ExpectSession("wrong");
    EXPECT_EQ(support::Changes(before, support::TakeSnapshot(settings)), std::vector<std::string>());
}

TEST_F(LinesTest, TwoShellsLoseNothing) {
    constexpr int kHosts = 20;
    const auto add = [](const std::string& name, int first) {
        std::string lines;
        for (int i = first; i < first + kHosts; ++i)
            lines += "dhcp-server interface eth1 add host " + name + std::to_string(i) +
                     " mac 02:00:00:00:0a:" + std::to_string(i) + " address 192.168.1." + std::to_string(i) +
                     "\n";
        return Daemon({kShell}, lines);
    };
    Daemon one = add("one-", 30);
    Daemon other = add("other-", 50);
    for (Daemon* shell : {&one, &other}) {
        const support::Result result = shell->Wait();
        EXPECT_EQ(result.status, 0) << result.out << result.err;
    }
    EXPECT_EQ(RunLine("dhcp-server check").status, 0);
    const support::Result hosts =
        support::RunShell("conf-shell -c 'dhcp-server show settings' | grep -c 'host o'");
    EXPECT_EQ(hosts.out, std::to_string(2 * kHosts) + "\n");
}

// While a question stands, others may change settings. Its answer is of yesterday then.
TEST_F(LinesTest, AQuestionKeepsNobodyWaiting) {
    ASSERT_EQ(RunLine("inet route add 10.0.0.1 gateway 192.168.1.7").status, 0);
    Terminal asking(kShell);
    asking.Converse({{"", "> "}, {"inet route clear\r", "[y/N] "}});
    EXPECT_EQ(RunLine("web show").status, 0);
    EXPECT_EQ(RunLine("web port 8443").status, 0);
    asking.Converse({{"y\r", "settings were changed while the question stood: the answer counts as no"},
                     {"", "> "},
                     {"inet route clear\r", "[y/N] "},
                     {"y\r", "have been removed"}});
}

TEST_F(LinesTest, OneShellChangesWhileOthersWait) {
    support::WriteFile("/run/conf-shell/lock", "root on pts/7, process 42\n");
    Daemon holder({"flock", "/run/conf-shell/lock", "sh", "-c", "echo held; sleep 60"});
    ASSERT_TRUE(holder.WaitForText("held"));
    const support::Result result = RunLine("web port 8443");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "another shell is changing the settings (root on pts/7, process 42): nothing was changed "
              "here, please try again\n");
    // The editor may stand open for hours, and the daemon takes a while: both have locks of their own.
    support::WriteFile("/mnt/main/etc/sk_nums", "FO_PARAMS=\"cluster\"\n");
    for (const char* line : {"failover config edit", "failover start", "failover start active",
                             "failover start passive", "failover stop"})
        EXPECT_EQ(RunLine(line).err.find("another shell"), std::string::npos) << line;
}

} // namespace
