#pragma once

#include <string>
#include <vector>

// An edit of the cluster file that is not finished: until the file has its new guard, no record can be read.

namespace corvanshell {

// Held while an edit is open. In a folder that is root's alone.
inline constexpr const char* kClusterEditLock = "/run/failover-edit.lock";

// The cluster file and its guard, and where a copy of each stands for as long as the file is being edited.
std::vector<std::string> ClusterFiles();
std::string ClusterBackupOf(const std::string& file);
// Whether both copies are there.
bool HasClusterBackups();

// What an unfinished edit has to do with a cluster file that does not match its guard, and the way out, to be
// put behind that. "" when there is none.
std::string DescribeClusterEdit();

} // namespace corvanshell
