#include "scratch.h"

#include "platform/guards.h"
#include "platform/locks.h"
#include "platform/path_list.h"

#include <chrono>
#include <functional>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>

using corvanshell::CheckGuardFile;
using corvanshell::UpdateGuardFile;
namespace fs = std::filesystem;

namespace {

// The digests of "a" and "b", as sha256sum(1) prints them.
const std::string digest_a = "ca978112ca1bbdcafac231b39a23dc4da786eff8147c4e72b9807785afee48bb";
const std::string digest_b = "3e23e8160039594a33894f6564e1b1348bbd7a0088d42c4acb73eeaed59c009d";

class Guards : public Scratch {
protected:
    Guards() {
        path_list::settings_lock = path("settings.lock");
        path_list::settings_guard = guard_;
        path_list::local_settings = a_;
        path_list::common_settings = b_;
        write(a_, "a");
        write(b_, "b");
    }

    bool strictly_good(const std::string& file) const {
        try {
            PwdGen::PWDGCheckCrgOfFile(file.c_str(), guard_.c_str());
            return true;
        } catch (const std::runtime_error&) {
            return false;
        }
    }
    bool update(int mode, const std::string& file) const {
        return UpdateGuardFile(guard_.c_str(), mode, file.c_str(), nullptr);
    }
    bool check(const std::string& file) const {
        return CheckGuardFile(guard_.c_str(), file.c_str(), nullptr);
    }
    bool sha256sum_accepts() const {
        return std::system(("sha256sum --strict --status -c " + guard_).c_str()) == 0;
    }

    const std::string guard_ = path("settings.crg"), a_ = path("a.conf"), b_ = path("b.conf");
};

TEST_F(Guards, WhatAGuardSaysOfAFile) {
    const std::string good = digest_a + "  " + a_ + "\n";
    const struct {
        const char* what;
        std::string text;
        bool checked, strict;
    } cases[] = {
        {"matching line", good, true, true},
        {"upper-case digits",
         "CA978112CA1BBDCAFAC231B39A23DC4DA786EFF8147C4E72B9807785AFEE48BB  " + a_ + "\n", true, true},
        {"other digest", digest_b + "  " + a_ + "\n", false, false},
        {"empty guard", "", true, false},
        {"line of another file", digest_a + "  " + b_ + "\n", true, false},
        {"no newline at the end", good + digest_a + "  " + a_.substr(0, a_.size() - 2), true, false},
        {"short digest", digest_b.substr(1) + "  " + a_ + "\n", true, false},
        {"one blank", digest_b + " " + a_ + "\n", true, false},
        {"relative path", good + digest_b + "  a.conf\n", true, false},
        {"unknown escape", "\\" + digest_b + "  " + a_ + "\\x\n", true, false},
        {"escape cut off", "\\" + digest_b + "  " + a_ + "\\\n", true, false},
        {"two lines of one file", good + digest_b + "  " + a_ + "\n", true, false},
        {"binary", std::string("\0\xff\x01\n", 4), true, false},
        {"huge", good + std::string(1024 * 1024, '\n'), true, false},
    };
    for (const auto& [what, text, checked, strict] : cases) {
        write(guard_, text);
        EXPECT_EQ(check(a_), checked) << what;
        EXPECT_EQ(strictly_good(a_), strict) << what;
    }
}

TEST_F(Guards, AMissingFileAndAMissingGuard) {
    EXPECT_TRUE(check(a_));
    EXPECT_FALSE(strictly_good(a_));
    EXPECT_TRUE(strictly_good(path("nowhere"))); // neither file nor line
    ASSERT_TRUE(update(0, a_));
    fs::remove(a_);
    EXPECT_FALSE(check(a_));
    EXPECT_FALSE(strictly_good(a_));
    fs::create_directory(a_); // what can't be read does not match either
    EXPECT_FALSE(check(a_));
    fs::remove(guard_);
    fs::create_directory(guard_);
    EXPECT_TRUE(check(a_)); // a guard that can't be read is damaged
    EXPECT_FALSE(strictly_good(path("nowhere")));
}

TEST_F(Guards, ModesAndTheirWholeText) {
    const std::string line_a = digest_a + "  " + a_ + "\n";
    const std::string line_b = digest_b + "  " + b_ + "\n";
    const std::string foreign = digest_a + "  /somewhere/else\n";
    const std::string missing = path("missing");
    const struct {
        const char* what;
        std::string before;
        std::function<bool()> update;
        std::string after;
    } cases[] = {
        {"0 replaces all", foreign, [&] { return update(0, a_); }, line_a},
        {"3 takes several and leaves out what is not there", foreign,
         [&] { return UpdateGuardFile(guard_.c_str(), 3, a_.c_str(), missing.c_str(), b_.c_str(), nullptr); },
         line_a + line_b},
        {"1 adds", foreign, [&] { return update(1, a_); }, foreign + line_a},
        {"1 replaces in its place", digest_b + "  " + a_ + "\n" + foreign, [&] { return update(1, a_); },
         line_a + foreign},
        {"1 drops what is not there", foreign + digest_a + "  " + missing + "\n",
         [&] { return update(1, missing); }, foreign},
        {"1 keeps the good lines of a damaged guard", "damage\n" + foreign, [&] { return update(1, a_); },
         foreign + line_a},
        {"a name with dots", "", [&] { return update(0, folder_ + "/./x/../a.conf"); }, line_a},
    };
    for (const auto& [what, before, update, after] : cases) {
        write(guard_, before);
        ASSERT_TRUE(update()) << what;
        EXPECT_EQ(read(guard_), after) << what;
    }
    struct stat status {};
    ASSERT_EQ(::stat(guard_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644U);
}

TEST_F(Guards, Sha256sumAcceptsEveryName) {
    for (const char* name :
         {"plain", "with blank", "back\\slash", "new\nline", "\\n", "carriage\rreturn", "*star"}) {
        const std::string file = path(name);
        write(file, name);
        ASSERT_TRUE(update(1, file)) << name;
        EXPECT_TRUE(strictly_good(file)) << name;
        EXPECT_TRUE(sha256sum_accepts()) << name;
        write(file, "changed");
        EXPECT_FALSE(check(file)) << name;
        ASSERT_TRUE(update(1, file)) << name;
    }
    ASSERT_EQ(std::system(("sha256sum '" + path("new\nline") + "' >" + guard_).c_str()), 0);
    EXPECT_TRUE(strictly_good(path("new\nline"))); // its own output is a guard too
}

TEST_F(Guards, AFailureLeavesTheOldGuard) {
    ASSERT_TRUE(update(0, a_));
    const std::string before = read(guard_);
    fs::create_directory(path("folder"));
    EXPECT_FALSE(update(0, path("folder")));
    EXPECT_FALSE(update(2, b_));
    EXPECT_EQ(read(guard_), before);
    const auto count = std::distance(fs::directory_iterator(folder_), {});
    EXPECT_FALSE(UpdateGuardFile(path("folder").c_str(), 0, a_.c_str(), nullptr)); // the rename fails
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), count);
    EXPECT_FALSE(UpdateGuardFile(path("no/guard").c_str(), 0, a_.c_str(), nullptr));
    EXPECT_THROW(CHCRG::SaveCrgToFile(a_.c_str(), path("no/guard").c_str()), std::runtime_error);
    EXPECT_THROW(CHCRG::SaveCrgToFile(path("missing").c_str(), guard_.c_str()), std::runtime_error);
    EXPECT_EQ(read(guard_), before);
}

TEST_F(Guards, LinksAreFollowedAndRecordsGetTheirs) {
    ASSERT_TRUE(update(1, a_));
    EXPECT_EQ(fs::read_symlink(a_ + ".crg"), guard_);
    EXPECT_FALSE(fs::exists(fs::symlink_status(b_ + ".crg")));
    ASSERT_TRUE(UpdateGuardFile(guard_.c_str(), 3, a_.c_str(), b_.c_str(), nullptr));
    EXPECT_EQ(fs::read_symlink(b_ + ".crg"), guard_);
    fs::remove(guard_); // now a link to nothing, through a relative one
    fs::create_symlink("a.conf.crg", path("relative"));
    CHCRG::SaveCrgToFile(b_.c_str(), path("relative").c_str());
    EXPECT_EQ(read(guard_), digest_b + "  " + b_ + "\n");
    EXPECT_TRUE(fs::is_symlink(path("relative")) && fs::is_symlink(a_ + ".crg"));
}

TEST_F(Guards, AWriterBetweenFileAndGuardIsWaitedFor) {
    ASSERT_TRUE(update(1, a_));
    lock_tool::FileLock lock(path_list::settings_lock);
    ASSERT_TRUE(lock.AcquireExclusive(0, false));
    write(a_, "b");
    std::thread writer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        EXPECT_TRUE(update(1, a_));
        lock.Release();
    });
    EXPECT_TRUE(check(a_));
    writer.join();
}

} // namespace
