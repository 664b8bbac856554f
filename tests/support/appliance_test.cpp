#include "tests/support/appliance.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

namespace support {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

using FixtureTest = Appliance;

// Two cases that would see each other if files outlived their appliance.
constexpr auto kLeftBehind = {"/etc/left-behind", "/usr/sbin/left-behind", "/var/lib/left-behind",
                              "/mnt/left-behind", "/run/left-behind",      "/tmp/left-behind",
                              "/dev/left-behind"};

void ExpectFreshDisk() {
    for (const char* path : kLeftBehind) {
        EXPECT_FALSE(Exists(path)) << path;
        WriteFile(path, "text");
    }
}

TEST_F(FixtureTest, FilesDoNotOutliveTheirAppliance) {
    ExpectFreshDisk();
}
TEST_F(FixtureTest, FilesOfAnotherApplianceAreNotSeen) {
    ExpectFreshDisk();
}

TEST_F(FixtureTest, TheRestOfTheMachineIsReadOnly) {
    EXPECT_EQ(mkdir("/left-behind", 0755), -1);
    EXPECT_EQ(errno, EROFS);
    EXPECT_THAT(RunProgram({"ip", "-brief", "link"}).out, ::testing::Not(HasSubstr("eth")));
}

TEST_F(FixtureTest, RecordersKeepTheOrderOfAllCallsAndAnswerInTurn) {
    Record("/sbin/ifalias.sh");
    Record("/etc/init.d/new-service");
    Queue("/sbin/ifalias.sh", {.out = "eth1:0\n", .err = "slow\n", .status = 3});
    Queue("/sbin/ifalias.sh", {.out = "eth1:1\n"});
    const Result first = RunShell("/sbin/ifalias.sh add eth1 10.0.0.9/24");
    EXPECT_EQ(first.out, "eth1:0\n");
    EXPECT_EQ(first.err, "slow\n");
    EXPECT_EQ(first.status, 3);
    EXPECT_EQ(RunProgram({"/etc/init.d/new-service", "a b", "", "it's", "two\nlines\\"}).status, 0);
    EXPECT_EQ(RunProgram({"/sbin/ifalias.sh"}).out, "eth1:1\n");
    EXPECT_EQ(RunProgram({"/sbin/ifalias.sh", "del"}).out, "");
    ExpectCommands({"/sbin/ifalias.sh add eth1 10.0.0.9/24",
                    R"(/etc/init.d/new-service 'a b' '' $'it\'s' $'two\nlines\\')", "/sbin/ifalias.sh",
                    "/sbin/ifalias.sh del"});
}

TEST_F(FixtureTest, LogHoldsMoreLinesThanItsSocket) {
    openlog("conf-tool", LOG_PID | LOG_NDELAY, LOG_USER);
    for (int i = 0; i < 100; i++) {
        syslog(i % 8, "line: %d", i);
    }
    const std::vector<LogLine> lines = TakeLog();
    ASSERT_EQ(lines.size(), 100U);
    EXPECT_EQ(lines[99], (LogLine{3, "line: 99"}));
    EXPECT_TRUE(TakeLog().empty());
}

TEST_F(FixtureTest, SnapshotNamesWhatChanged) {
    WriteFile("/mnt/main/a", "1");
    WriteFile("/mnt/main/mode", "1");
    WriteFile("/etc/b", "1");
    const Snapshot before = TakeSnapshot();
    WriteFile("/run/lock/any", "");
    ExpectUnchanged(before);
    WriteFile("/mnt/main/a", "2");
    EXPECT_EQ(unlink("/etc/b"), 0);
    EXPECT_EQ(unlink("/etc/passwd"), 0);
    WriteFile("/etc/passwd", "nobody");
    EXPECT_EQ(chmod("/mnt/main/mode", 0600), 0);
    WriteLink("/var/lib/link", "nowhere");
    EXPECT_THAT(Changes(before, TakeSnapshot()),
                ElementsAre("removed /etc/b", "changed /etc/passwd", "changed /mnt/main/a",
                            "changed /mnt/main/mode", "added /var/lib/link"));
}

TEST_F(FixtureTest, ProgramsEndWithTheirOwner) {
    std::string pid;
    {
        Daemon daemon({"/bin/sh", "-c", "echo \"started $$\"; sleep 100"});
        ASSERT_TRUE(daemon.WaitForText("started"));
        pid = std::to_string(daemon.Pid());
        EXPECT_EQ(daemon.Out(), "started " + pid + "\n");
        EXPECT_EQ(daemon.Wait(std::chrono::milliseconds(1)).status, -1);
    }
    EXPECT_FALSE(Exists("/proc/" + pid));
}

} // namespace

} // namespace support
