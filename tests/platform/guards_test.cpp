#include "platform/guards.h"
#include "platform/locks.h"
#include "platform/path_list.h"
#include "tests/support/appliance.h"

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>

using namespace support;

namespace {

using corvanshell::UpdateGuardFile;
namespace fs = std::filesystem;

const std::string kFolder = "/mnt/guards/";
const std::string kGuard = kFolder + "settings.crg", kA = kFolder + "a.conf", kB = kFolder + "b.conf";
const std::string kMissing = kFolder + "missing", kNoPlace = kFolder + "no/guard";
// The digests of "a" and "b", as sha256sum(1) prints them.
const std::string kDigestA = "ca978112ca1bbdcafac231b39a23dc4da786eff8147c4e72b9807785afee48bb";
const std::string kDigestB = "3e23e8160039594a33894f6564e1b1348bbd7a0088d42c4acb73eeaed59c009d";
const std::string kGoodA = kDigestA + "  " + kA + "\n", kBadA = kDigestB + "  " + kA + "\n";
const std::string kGoodB = kDigestB + "  " + kB + "\n", kForeign = kDigestA + "  /somewhere/else\n";

class GuardTest : public Appliance {
protected:
    GuardTest() {
        path_list::settings_guard = kGuard;
        path_list::local_settings = kA;
        path_list::common_settings = kB;
        WriteFile(kA, "a");
        WriteFile(kB, "b");
    }
};

bool Update(int mode, const std::string& file) {
    return UpdateGuardFile(kGuard.c_str(), mode, file.c_str(), nullptr);
}

bool Check(const std::string& file) {
    return corvanshell::CheckGuardFile(kGuard.c_str(), file.c_str(), nullptr);
}

bool Strict(const std::string& file) {
    try {
        PwdGen::PWDGCheckCrgOfFile(file.c_str(), kGuard.c_str());
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

TEST_F(GuardTest, WhatAGuardSaysOfAFile) {
    const struct {
        const char* what;
        std::string guard;
        bool checked, strict;
    } cases[] = {
        {"matching line", kGoodA, true, true},
        {"other digest", kBadA, false, false},
        {"line of another file", kForeign, true, false},
        {"no newline at the end", kBadA + kGoodB.substr(0, kGoodB.size() - 3), true, false},
        {"short digest", kBadA + kGoodA.substr(1), true, false},
        {"relative path", kBadA + kDigestB + "  a.conf\n", true, false},
        {"unknown escape", kBadA + "\\" + kDigestB + "  /\\x\n", true, false},
        {"escape cut off", kBadA + "\\" + kDigestB + "  /\\\n", true, false},
        {"two lines of one file", kGoodA + kBadA, true, false},
    };
    for (const auto& [what, guard, checked, strict] : cases) {
        WriteFile(kGuard, guard);
        EXPECT_EQ(Check(kA), checked) << what;
        EXPECT_EQ(Strict(kA), strict) << what;
    }
}

TEST_F(GuardTest, AMissingFileAndAMissingGuard) {
    EXPECT_TRUE(Check(kA));
    EXPECT_FALSE(Strict(kA));
    EXPECT_TRUE(Strict(kMissing)); // neither file nor line
    ASSERT_TRUE(Update(0, kA));
    fs::remove(kA);
    EXPECT_FALSE(Check(kA));
    EXPECT_FALSE(Strict(kA));
    fs::create_directory(kA); // what can't be read does not match either
    EXPECT_FALSE(Check(kA));
    fs::remove(kGuard);
    ASSERT_EQ(mkfifo(kGuard.c_str(), 0600), 0); // as damaged as a guard can be, and nobody waits for it
    EXPECT_TRUE(Check(kA));
    EXPECT_FALSE(Strict(kMissing));
}

TEST_F(GuardTest, ModesWriteTheWholeGuard) {
    const struct {
        const char* what;
        std::string before;
        int mode;
        std::string file, after;
    } cases[] = {
        {"0 replaces all", kForeign, 0, kA, kGoodA},
        {"0 without the file", kForeign, 0, kMissing, ""},
        {"1 adds", kForeign, 1, kA, kForeign + kGoodA},
        {"1 replaces in its place", kBadA + kForeign, 1, kA, kGoodA + kForeign},
        {"1 drops what is not there", kForeign + kDigestA + "  " + kMissing + "\n", 1, kMissing, kForeign},
        {"1 mends a damaged guard", "damage\n" + kForeign, 1, kA, kForeign + kGoodA},
        {"the name is made plain", "", 1, kFolder + "/./a.conf", kGoodA},
        {"the folder above, too", "", 1, kFolder + "x/../a.conf", kGoodA},
    };
    for (const auto& [what, before, mode, file, after] : cases) {
        WriteFile(kGuard, before, 0600);
        ASSERT_TRUE(Update(mode, file)) << what;
        EXPECT_EQ(ReadFile(kGuard), after) << what;
    }
    EXPECT_EQ(ModeOf(kGuard), 0644U);
    WriteFile(kGuard, kForeign); // another member of the shared guard
    ASSERT_TRUE(UpdateGuardFile(kGuard.c_str(), 3, kA.c_str(), kMissing.c_str(), kB.c_str(), nullptr));
    EXPECT_EQ(ReadFile(kGuard), kForeign + kGoodA + kGoodB);
}

TEST_F(GuardTest, Sha256sumAcceptsEveryName) {
    for (const char* name :
         {"plain", "with blank", "back\\slash", "new\nline", "\\n", "carriage\rreturn", "*star"}) {
        const std::string file = kFolder + name;
        WriteFile(file, name);
        ASSERT_TRUE(Update(0, file)) << name;
        EXPECT_EQ(RunProgram({"sha256sum", "--strict", "-c", kGuard}).status, 0) << name;
        WriteFile(kGuard, RunProgram({"sha256sum", file}).out); // its own output is a guard too
        EXPECT_TRUE(Strict(file)) << name;
        WriteFile(file, "changed");
        EXPECT_FALSE(Check(file)) << name;
    }
}

TEST_F(GuardTest, AFailureLeavesEverythingAsItWas) {
    ASSERT_TRUE(Update(0, kA));
    fs::create_directories(kFolder + "folder/full");
    const Snapshot before = TakeSnapshot({kFolder});
    (void)TakeLog();
    EXPECT_FALSE(Update(0, kFolder + "folder"));
    EXPECT_FALSE(Update(2, kB));
    EXPECT_FALSE(UpdateGuardFile(kNoPlace.c_str(), 0, kA.c_str(), nullptr));
    EXPECT_EQ(TakeLog(),
              (std::vector<LogLine>{
                  {3, kGuard + ": failed to update guard: " + kFolder + "folder: Invalid argument"},
                  {3, kGuard + ": failed to update guard: unknown mode 2"},
                  {3, kNoPlace + ": failed to update guard: failed to create temporary file: "
                                 "No such file or directory"}}));
    EXPECT_THROW(CHCRG::SaveCrgToFile(kA.c_str(), (kFolder + "folder").c_str()), std::runtime_error);
    EXPECT_THROW(CHCRG::SaveCrgToFile(kMissing.c_str(), kGuard.c_str()), std::runtime_error);
    EXPECT_EQ(Changes(before, TakeSnapshot({kFolder})), std::vector<std::string>());
}

TEST_F(GuardTest, LinksAreFollowedAndRecordsGetTheirs) {
    ASSERT_TRUE(Update(1, kA));
    EXPECT_EQ(fs::read_symlink(kA + ".crg"), kGuard);
    EXPECT_FALSE(Exists(kB + ".crg"));
    ASSERT_TRUE(UpdateGuardFile(kGuard.c_str(), 3, kA.c_str(), kB.c_str(), nullptr));
    EXPECT_EQ(fs::read_symlink(kB + ".crg"), kGuard);
    fs::remove(kGuard);
    WriteLink(kFolder + "relative", "a.conf.crg"); // by two links to nothing
    CHCRG::SaveCrgToFile(kB.c_str(), (kFolder + "relative").c_str());
    EXPECT_EQ(ReadFile(kGuard), kGoodB);
}

TEST_F(GuardTest, AWriterBetweenFileAndGuardIsWaitedFor) {
    ASSERT_TRUE(Update(1, kA));
    lock_tool::FileLock lock(path_list::settings_lock);
    ASSERT_TRUE(lock.AcquireExclusive(0, false));
    WriteFile(kA, "b");
    std::thread writer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        EXPECT_TRUE(Update(1, kA));
        lock.Release();
    });
    EXPECT_TRUE(Check(kA));
    writer.join();
}

} // namespace
