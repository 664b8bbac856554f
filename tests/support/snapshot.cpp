#include "tests/support/snapshot.h"

#include "tests/support/files.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tuple>

namespace support {

namespace {

FileState Look(const std::string& path, const timespec& start) {
    struct stat now {};
    lstat(path.c_str(), &now);
    const bool untouched =
        std::tie(now.st_ctim.tv_sec, now.st_ctim.tv_nsec) < std::tie(start.tv_sec, start.tv_nsec);
    if (S_ISLNK(now.st_mode)) {
        return {now.st_mode, std::filesystem::read_symlink(path)};
    }
    if (!S_ISREG(now.st_mode)) {
        return {now.st_mode, ""};
    }
    return {now.st_mode, untouched ? "as the machine has it" : ReadFile(path)};
}

} // namespace

Snapshot TakeSnapshot(const std::vector<std::string>& roots) {
    struct stat started {};
    stat("/dev/appliance", &started);
    Snapshot snapshot;
    const auto options = std::filesystem::directory_options::skip_permission_denied;
    for (const std::string& root : roots) {
        std::filesystem::recursive_directory_iterator entry(root, options);
        for (; entry != std::filesystem::recursive_directory_iterator(); ++entry) {
            if (entry->path() == "/run/lock")
                entry.disable_recursion_pending();
            if (entry->path() == "/run/conf-shell") {
                entry.disable_recursion_pending();
                continue;
            }
            snapshot.emplace(entry->path(), Look(entry->path(), started.st_ctim));
        }
    }
    return snapshot;
}

std::vector<std::string> Changes(const Snapshot& before, const Snapshot& after) {
    std::map<std::string, std::string> changes;
    for (const auto& [path, state] : before) {
        const auto now = after.find(path);
        if (now == after.end() || now->second != state) {
            changes[path] = now == after.end() ? "removed " : "changed ";
        }
    }
    for (const auto& [path, state] : after) {
        if (!before.contains(path)) {
            changes[path] = "added ";
        }
    }
    std::vector<std::string> lines;
    for (const auto& [path, kind] : changes) {
        lines.push_back(kind + path);
    }
    return lines;
}

void ExpectUnchanged(const Snapshot& before) {
    const Snapshot after = TakeSnapshot();
    for (const std::string& line : Changes(before, after)) {
        const std::string path = line.substr(line.find(' ') + 1);
        ADD_FAILURE() << line;
        if (before.contains(path) && after.contains(path)) {
            EXPECT_EQ(before.at(path).mode, after.at(path).mode) << path;
            EXPECT_EQ(before.at(path).contents, after.at(path).contents) << path;
        }
    }
}

} // namespace support
