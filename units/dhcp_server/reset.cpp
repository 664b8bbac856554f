#include "units/dhcp_server/reset.h"

#include "platform/messages.h"
#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/model/gates.h"
#include "units/dhcp_server/model/paths.h"
#include "units/dhcp_server/single_options.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <unistd.h>

namespace settings::dhcp_server {
namespace {

constexpr const char* kTenDays = "864000"; // seconds

bool RefuseRemoval(const std::string& path, const char* what) {
    return Refuse("DHCP server: %s: failed to remove %s: %s", path, what, std::strerror(errno));
}

bool RemoveFile(const std::string& path, const char* what) {
    return unlink(path.c_str()) == 0 || errno == ENOENT || RefuseRemoval(path, what);
}

// Only the file's end is what there was of leases; the daemon wants the file itself to be there.
bool EmptyLeases() {
    std::FILE* leases = std::fopen(kLeaseDatabase, "we");
    return (leases != nullptr && std::fclose(leases) == 0) || RefuseRemoval(kLeaseDatabase, "leases history");
}

bool MakeDefaultSettings() {
    File file(kDhcpServerUnit, "");
    if (!file.Load())
        return true; // reported, and there is nothing to set the times in
    const bool saved = file.Save();
    const bool default_time = SetDefaultLeaseTime(Area(), kTenDays);
    const bool max_time = SetMaxLeaseTime(Area(), kTenDays);
    return saved && default_time && max_time;
}

} // namespace

bool ResetDhcpServerSettings() {
    if (!IsChangePermitted())
        return false;
    bool done = RemoveFile(GetFilePath(kDhcpServerUnit), "settings file") && MakeDefaultSettings();
    done = RemoveFile(kDaemonSettings, "daemon settings file") && done;
    done = RemoveFile(kDaemonExtraSettings, "daemon listening interfaces file") && done;
    return EmptyLeases() && done;
}

} // namespace settings::dhcp_server
