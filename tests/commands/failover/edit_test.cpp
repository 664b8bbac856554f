#include "commands/failover/edit.h"
#include "commands/failover/line_changes.h"
#include "records/cluster_edit.h"
#include "tests/commands/failover/failover_fixture.h"

#include <csignal>
#include <sys/wait.h>

namespace failover {
namespace {

using support::Exists;
using support::ReadFile;

const std::string kBackup = kClusterFile + "~";
const std::string kGuardBackup = kClusterGuard + "~";

class ClusterEditTest : public FailoverTest {
protected:
    ClusterEditTest() { shown_file_ = kClusterFile; }

    // What the administrator does in the editor; the file is $1.
    static void Script(const std::string& commands) { support::WriteFile("/run/rnano-commands", commands); }

    void PlayEdit(const std::string& script, const std::string& input = "") {
        Script(script);
        Type({"failover config edit   # " + script + (input.empty() ? "" : " < " + input)});
    }

    const std::string old_ = ReadFile(kClusterFile);
    const std::string old_guard_ = ReadFile(kClusterGuard);
};

TEST_F(ClusterEditTest, Edits) {
    ASSERT_EQ(chown(kClusterFile.c_str(), 7, 8), 0);
    PlayEdit("");
    PlayEdit("truncate -s -1 $1"); // the last newline
    PlayEdit("rm $1");
    PlayEdit("sed -i s/192.168.1.3/192.168.2.3/ $1", "n");
    PlayEdit("sed -i s/192.168.1.3/192.168.2.3/ $1"); // nobody answers
    EXPECT_EQ(support::RunShell("stat -c '%a %u %g' " + kClusterFile).out, "640 7 8\n");
    PlayEdit("grep -q 192.168.2.3 $1 && to=1.9 || to=2.3; sed -i s/192.168.[12].3/192.168.$to/ $1", "y");
    EXPECT_TRUE(IsGuarded());
    {
        const support::Daemon other = support::HoldLock(corvanshell::kClusterEditLock, true);
        PlayEdit("rm $1   # while another edit is open");
    }
    ASSERT_EQ(unlink(corvanshell::kClusterEditLock), 0);
    ASSERT_EQ(mkdir(corvanshell::kClusterEditLock, 0755), 0);
    PlayEdit("rm $1   # no lock can be had");
    ASSERT_EQ(rmdir(corvanshell::kClusterEditLock), 0);
    // The file may be a link to another file system.
    ASSERT_EQ(support::RunShell("mkdir /run/far && mv " + kClusterFile +
                                " /run/far && ln -s /run/far/failover.ini " + kClusterFile)
                  .status,
              0);
    PlayEdit("printf '[chan' > $1", "n");
    EXPECT_TRUE(IsGuarded());
    EXPECT_EQ(support::RunShell("mv /run/far/failover.ini " + kClusterFile).status, 0);
    PlayEdit("echo >> $1; rm $1.crg; mkdir $1.crg"); // no guard can be written: the backups stay
    rmdir(kClusterGuard.c_str());
    PlayEdit("echo edited > $1"); // and none can be copied
    // The backup of a file that is gone is its last copy.
    ASSERT_EQ(rename(kClusterFile.c_str(), kBackup.c_str()), 0);
    PlayEdit("echo edited > $1");
    WriteCluster(old_);
    PlayEdit("exit 1   # without an editor of its own");
    ASSERT_EQ(unlink("/usr/bin/rnano"), 0);
    PlayEdit("# no editor");
    ExpectTranscript("failover/edits");
}

class KilledEditTest : public ClusterEditTest {
protected:
    const std::string new_ = Channel("eth1", "192.168.1.4/24");

    // An edit in a process that is killed, by the editor or, with its editor, `delay` microseconds behind its
    // start. Each file is whole then, or its backup is.
    void KillEdit(useconds_t delay = 0) {
        WriteCluster(old_);
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
        const std::string text = ReadFile(kClusterFile);
        if (Exists(kBackup))
            EXPECT_EQ(ReadFile(kBackup), old_);
        else
            EXPECT_TRUE(text == old_ || text == new_) << text;
        EXPECT_TRUE(ReadFile(kClusterGuard) == old_guard_ || IsGuarded());
    }
};

TEST_F(KilledEditTest, WhileTheEditorIsOpen) {
    // What the editor had written, and what the next edit makes of it when nobody fixes it.
    const std::string cases[][2] = {
        {"", old_}, {"printf '[chan' > $1\n", old_}, {"printf '" + new_ + "' > $1\n", new_}};
    for (const auto& [script, later] : cases) {
        Script(script + "kill -KILL $PPID\n");
        KillEdit();
        EXPECT_EQ(ReadFile(kBackup) + ReadFile(kGuardBackup), old_ + old_guard_);
        EXPECT_EQ(support::ModeOf(kBackup), 0640U);
        Script("");
        const support::Output output = support::Capture([] { EXPECT_TRUE(EditConfig()); }, "n\n");
        EXPECT_EQ(output.err.empty(), script.empty()); // what can't be checked is told
        EXPECT_EQ(ReadFile(kClusterFile), later);
        EXPECT_TRUE(IsGuarded());
        EXPECT_FALSE(Exists(kBackup) || Exists(kGuardBackup));
    }
}

// The kills fall before, into and behind the copying, the writing and the guarding.
TEST_F(KilledEditTest, AtAnyMoment) {
    Script("printf '[chan' > $1; printf '" + new_ + "' > $1");
    int unfinished = 0;
    for (useconds_t delay = 100; delay < 12000; delay += 100) {
        KillEdit(delay);
        unfinished += Exists(kBackup) ? 1 : 0;
        (void)support::RunShell("rm -f " + kBackup + " " + kGuardBackup);
    }
    EXPECT_GT(unfinished, 3);
}

// While the editor is open, and at the question whether to fix the text.
TEST_F(KilledEditTest, SignalsGiveTheEditUp) {
    for (const int signal : {SIGHUP, SIGTERM, SIGINT}) {
        const std::string send = "kill -" + std::to_string(signal) + " $PPID";
        for (const std::string& script :
             {"printf '" + new_ + "' > $1; " + send + "; exec sleep 20",
              "sed -i s/192.168.1.3/192.168.2.3/ $1; (sleep 0.3; " + send + ") &"}) {
            Script(script);
            int silent[2] = {};
            ASSERT_EQ(pipe2(silent, O_CLOEXEC), 0);
            const pid_t child = fork();
            if (child == 0) {
                dup2(silent[0], STDIN_FILENO);
                dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
                dup2(STDOUT_FILENO, STDERR_FILENO);
                _exit(EditConfig() ? 0 : 1);
            }
            int status = 0;
            EXPECT_EQ(waitpid(child, &status, 0), child);
            close(silent[0]);
            close(silent[1]);
            EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << script;
            EXPECT_EQ(ReadFile(kClusterFile) + ReadFile(kClusterGuard), old_ + old_guard_) << script;
            EXPECT_FALSE(Exists(kBackup) || Exists(kGuardBackup));
        }
    }
}

TEST(LineChangesTest, Order) {
    const Lines before = {"a", "b", "c", "d", "c"};
    EXPECT_EQ(FindChanges(before, {"c", "b", "a", "d", "x", "c"}), (Lines{"-a", "-b", "+b", "+a", "+x"}));
    EXPECT_EQ(FindChanges({}, {"", ""}), (Lines{"+", "+"}));
    Lines other(3000, "b");
    other.front() = "a";
    EXPECT_EQ(FindChanges(Lines(3000, "a"), other).size(), 2U * 2999U); // too long for a search
}

} // namespace
} // namespace failover
