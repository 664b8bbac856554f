#pragma once

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

// What stands on disk at a moment, to prove that an operation left it alone.
namespace support {

struct FileState {
    mode_t mode; // type and permissions
    // A file's bytes or a link's target. A file that nobody has touched since the appliance started is told
    // by its change time, and not read.
    std::string contents;
    bool operator==(const FileState&) const = default;
};

using Snapshot = std::map<std::string, FileState>;

// Lock files below /run/lock and the shells' own are left out.
[[nodiscard]] Snapshot TakeSnapshot(const std::vector<std::string>& roots = {"/etc", "/mnt", "/run",
                                                                             "/var/lib"});

// One line for each path that differs, by name: "added /etc/a", "changed /etc/b", "removed /etc/c".
[[nodiscard]] std::vector<std::string> Changes(const Snapshot& before, const Snapshot& after);

// `before` was taken of the default roots. Names each path that differs, with its contents then and now.
void ExpectUnchanged(const Snapshot& before);

} // namespace support
