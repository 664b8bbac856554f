#include "records/cluster_edit.h"

#include "platform/locks.h"
#include "platform/path_list.h"

#include <algorithm>
#include <libintl.h>
#include <unistd.h>

namespace corvanshell {
namespace {

bool IsEditOpen() {
    lock_tool::FileLock lock(kClusterEditLock);
    return access(kClusterEditLock, F_OK) == 0 && !lock.AcquireShared(0, false);
}

} // namespace

std::vector<std::string> ClusterFiles() {
    return {path_list::failover_settings, path_list::failover_settings + ".crg"};
}

std::string ClusterBackupOf(const std::string& file) {
    return file + "~";
}

bool HasClusterBackups() {
    const std::vector<std::string> files = ClusterFiles();
    return std::all_of(files.begin(), files.end(), [](const std::string& file) {
        return access(ClusterBackupOf(file).c_str(), F_OK) == 0;
    });
}

std::string DescribeClusterEdit() {
    if (IsEditOpen())
        return gettext(", it is being edited: please try again when the edit is done");
    if (HasClusterBackups())
        return gettext(", an edit was broken off: \"failover config edit\" ends it");
    return "";
}

} // namespace corvanshell
