#include "commands/failover/edit.h"
#include "commands/failover/line_changes.h"
#include "tests/commands/failover/failover_fixture.h"

#include <csignal>
#include <sys/wait.h>

namespace failover {
namespace {

using support::Exists;
using support::ReadFile;

const std::string kBackup = std::string(kClusterFile) + "~";
const std::string kGuardBackup = std::string(kClusterGuard) + "~";
const std::string kQuestion = "Do you want to fix this? If not then failover.ini will not change. [y/N] ";
const std::string kUnchanged = "The file failover.ini is not changed\n";
const std::string kChanged =
    "The file failover.ini is changed\nChanges will be applied after restart of failover daemon\n";
const std::string kCrossing = "broadcast 192.168.2.255 on interface eth1 crossing with eth2\n"
                              "failover address validation failed\n";

class EditTest : public FailoverTest {
protected:
    EditTest() {
        EXPECT_EQ(chmod(kClusterFile, 0640), 0);
        EXPECT_EQ(chown(kClusterFile, 7, 8), 0);
    }

    // What the administrator does in the editor; the file is $1.
    static void Script(const std::string& commands) { support::WriteFile("/run/rnano-commands", commands); }

    void ExpectEdit(const support::Output& output, const std::vector<std::string>& log = {},
                    const std::string& input = "", bool done = true) {
        Log lines = {{6, "command failover config edit"}};
        for (const std::string& line : log)
            lines.push_back({6, line});
        Expect(EditConfig, {.done = done, .output = output, .log = lines}, input);
        EXPECT_FALSE(Exists(kBackup) || Exists(kGuardBackup));
        EXPECT_TRUE(corvanshell::CheckGuardFile(kClusterGuard, kClusterFile, nullptr));
    }
    void ExpectOld() {
        EXPECT_EQ(ReadFile(kClusterFile), old_);
        EXPECT_EQ(ReadFile(kClusterGuard), old_guard_);
        struct stat state = {};
        EXPECT_EQ(stat(kClusterFile, &state), 0);
        EXPECT_EQ(state.st_mode & 07777, 0640U);
        EXPECT_EQ(std::make_pair(state.st_uid, state.st_gid), std::make_pair(uid_t{7}, gid_t{8}));
    }

    const std::string old_ = ReadFile(kClusterFile);
    const std::string old_guard_ = ReadFile(kClusterGuard);
};

TEST_F(EditTest, WithoutChange) {
    const char* scripts[] = {
        "",
        "truncate -s -1 \"$1\"", // the last newline
        "sed -i s/192.168.1.3/192.168.1.4/ \"$1\"; sed -i s/192.168.1.4/192.168.1.3/ \"$1\"",
    };
    for (const char* script : scripts) {
        Script(script);
        ExpectEdit({kUnchanged, ""});
        ExpectOld();
    }
    Script("rm \"$1\"");
    ExpectEdit({kUnchanged, "/etc/failover.ini: failed to open file: No such file or directory\n"}, {}, "",
               false);
    ExpectOld();
}

TEST_F(EditTest, Change) {
    Script("stat -c '%a %u %g' \"$1~\" > /tmp/backup; sed -i s/192.168.1.3/192.168.1.4/ \"$1\"");
    ExpectEdit({kChanged, ""}, {"-activeip = 192.168.1.3/24", "+activeip = 192.168.1.4/24"});
    EXPECT_EQ(ReadFile("/tmp/backup"), "640 7 8\n");
    EXPECT_EQ(ReadFile(kClusterFile), Channel("eth1", "192.168.1.4/24") + Channel("eth0", "change_this"));
}

TEST_F(EditTest, BadAddressesAreFixedOrGivenUp) {
    Script("sed -i s/192.168.1.3/192.168.2.3/ \"$1\"");
    ExpectEdit({kQuestion + kUnchanged, kCrossing}, {}, "n\n");
    ExpectOld();
    ExpectEdit({kQuestion + kUnchanged, kCrossing}); // nobody answers
    ExpectOld();
    Script("grep -q 192.168.2.3 \"$1\" && to=1.9 || to=2.3; sed -i s/192.168.[12].3/192.168.$to/ \"$1\"");
    ExpectEdit({kQuestion + kChanged, kCrossing},
               {"-activeip = 192.168.1.3/24", "+activeip = 192.168.1.9/24"}, "y\n");
}

TEST_F(EditTest, CopyFailures) {
    const support::LogLine log = {6, "command failover config edit"};
    Script("echo edited > \"$1\"");
    ASSERT_EQ(rename(kClusterGuard, "/etc/aside"), 0);
    ExpectRefusal(EditConfig, {.output = {"", "failed to copy failover config file: /etc/failover.ini.crg: "
                                              "No such file or directory\n"},
                               .log = {log}});
    ASSERT_EQ(rename("/etc/aside", kClusterGuard), 0);
    // The backup of a file that is gone is its last copy.
    ASSERT_EQ(rename(kClusterFile, kBackup.c_str()), 0);
    ExpectRefusal(EditConfig, {.output = {"", "failed to copy failover config file: /etc/failover.ini: "
                                              "No such file or directory\n"},
                               .log = {log}});
}

TEST_F(EditTest, UnguardedTextKeepsItsBackups) {
    Script("sed -i s/192.168.1.3/192.168.1.4/ \"$1\"; rm \"$1.crg\"; mkdir \"$1.crg\"");
    const std::string text = support::Capture([] { EXPECT_FALSE(EditConfig()); }).err;
    EXPECT_EQ(text, "Failed to save the checksum for file failover.ini. Your files may appear corrupt.\n");
    EXPECT_EQ(ReadFile(kBackup) + ReadFile(kGuardBackup), old_ + old_guard_);
}

class KilledEditTest : public EditTest {
protected:
    const std::string new_ = Channel("eth1", "192.168.1.4/24");

    // An edit in a process that is killed, by the editor or, with its editor, `delay` microseconds behind its
    // start.
    void KillEdit(useconds_t delay = 0) {
        WriteCluster(old_);
        EXPECT_EQ(chmod(kClusterFile, 0640), 0);
        const pid_t child = fork();
        if (child == 0) {
            setpgid(0, 0);
            dup2(open("/dev/null", O_RDWR | O_CLOEXEC), STDOUT_FILENO);
            _exit(EditConfig() ? 0 : 1);
        }
        if (delay > 0) {
            setpgid(child, child);
            usleep(delay);
            kill(-child, SIGKILL);
        }
        EXPECT_EQ(waitpid(child, nullptr, 0), child);
        EXPECT_TRUE(support::WaitFor([&] { return kill(-child, 0) != 0; })); // the editor is gone, too
    }
    // Each file is whole, or its backup is.
    void ExpectNothingLost() {
        const std::string text = ReadFile(kClusterFile);
        const bool has_backup = Exists(kBackup);
        EXPECT_TRUE(text == old_ || text == new_ || has_backup) << text;
        if (has_backup) {
            EXPECT_EQ(ReadFile(kBackup), old_);
            EXPECT_EQ(support::ModeOf(kBackup), 0640U);
        }
        EXPECT_TRUE(ReadFile(kClusterGuard) == old_guard_ ||
                    corvanshell::CheckGuardFile(kClusterGuard, kClusterFile, nullptr));
    }
};

TEST_F(KilledEditTest, WhileTheEditorIsOpen) {
    const std::string end = "kill -KILL $PPID\n";
    // What the editor had written, and what the next edit makes of it when nobody fixes it.
    const std::string cases[][2] = {
        {"", old_}, {"printf '[chan' > \"$1\"\n", old_}, {"printf '" + new_ + "' > \"$1\"\n", new_}};
    for (const auto& [script, later] : cases) {
        Script(script + end);
        KillEdit();
        ExpectNothingLost();
        EXPECT_EQ(ReadFile(kBackup) + ReadFile(kGuardBackup), old_ + old_guard_);
        Script("");
        (void)support::Capture([] { EXPECT_TRUE(EditConfig()); }, "n\n");
        EXPECT_EQ(ReadFile(kClusterFile), later);
        EXPECT_TRUE(corvanshell::CheckGuardFile(kClusterGuard, kClusterFile, nullptr));
        EXPECT_FALSE(Exists(kBackup) || Exists(kGuardBackup));
    }
}

// The kills fall before, into and behind the copying, the writing and the guarding.
TEST_F(KilledEditTest, AtAnyMoment) {
    Script("printf '[chan' > \"$1\"; printf '" + new_ + "' > \"$1\"");
    int unfinished = 0;
    for (useconds_t delay = 100; delay < 12000; delay += 100) {
        KillEdit(delay);
        ExpectNothingLost();
        unfinished += Exists(kBackup) ? 1 : 0;
        (void)unlink(kBackup.c_str());
        (void)unlink(kGuardBackup.c_str());
    }
    EXPECT_GT(unfinished, 3);
}

TEST(LineChangesTest, Order) {
    const Lines before = {"a", "b", "c", "d", "c"};
    EXPECT_EQ(FindChanges(before, before), Lines());
    EXPECT_EQ(FindChanges(before, {"a", "d", "c"}), (Lines{"-b", "-c"}));
    EXPECT_EQ(FindChanges(before, {"c", "b", "a", "d", "x", "c"}), (Lines{"-a", "-b", "+b", "+a", "+x"}));
    EXPECT_EQ(FindChanges({}, {"", ""}), (Lines{"+", "+"}));
    const Lines many(3000, "a");
    Lines other(3000, "b");
    other.front() = "a";
    EXPECT_EQ(FindChanges(many, other).size(), 2U * 2999U);
}

} // namespace
} // namespace failover
