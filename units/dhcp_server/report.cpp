#include "units/dhcp_server/report.h"

#include "front/reports/report.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "records/common_conf_struct.h"
#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/model/gates.h"
#include "units/dhcp_server/model/paths.h"
#include "units/dhcp_server/tree_writer.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace settings::dhcp_server {
namespace {

constexpr const char* kTitle = "DHCP server";

bool WriteReport(Report& report) {
    File file(kDhcpServerUnit, "");
    const corvanshell::CommonConfStruct common;
    if (!file.Load() || !common.CheckRead() || !report.Open())
        return false;
    std::FILE* out = report.Out();
    std::fprintf(out, "DHCP server autostart is %s\n", common.GetFlag("DHCP_SERVER") ? "on" : "off");
    std::fprintf(out, "DHCP server is %s\n", IsDhcpServerRunning() ? "started" : "stopped");
    std::fprintf(out, "DHCP server interfaces");
    for (const std::string& interface : CollectValues(file, "child::subnet/interface[@type = 'listen']"))
        std::fprintf(out, " %s", interface.c_str());
    std::fprintf(out, "\nDHCP server configuration:\n");
    TreeWriter writer(file, out);
    const bool written = WriteTree(writer, Area());
    return report.Sync() && written;
}

// The option goes into a shell line.
bool IsOptionName(const std::string& mode) {
    const bool good = !mode.empty() && std::all_of(mode.begin(), mode.end(), [](unsigned char letter) {
        return std::isalnum(letter) != 0 || letter == '-';
    });
    return good || Refuse("DHCP server: %s: unknown form of the leases report", mode);
}

// Without the first line, with its times marked as UTC, without what a carriage return overwrites, and cut to
// 70 columns:
//   { /usr/sbin/dhcp-lease-list --all | sed -e '...' | cut -c -70 > /tmp/...; } 2>/dev/null
bool WriteLeases(const std::string& mode, const std::string& path) {
    const std::string command = "{ /usr/sbin/dhcp-lease-list --" + mode +
                                " | sed -e '1d;s|valid until|& (UTC)|;s|.*\\r||' | cut -c -70 > " + path +
                                "; } 2>/dev/null";
    return shell_spawn("/bin/sh", "-c", command.c_str(), nullptr) == 0 ||
           Refuse("DHCP server: failed to get leases information");
}

bool ShowDatabase(lock_tool::FileLock& lock) {
    const Stream database(std::fopen(kLeaseDatabase, "re"));
    if (database == nullptr)
        return Refuse("DHCP server: failed to access lease database file: %s", std::strerror(errno));
    return ShowFile(lock, kLeaseDatabase);
}

} // namespace

bool PrintDhcpServer() {
    lock_tool::FileLock lock(kSettingsLock);
    Report report(kTitle, kDhcpServerUnit);
    return LockForReading(lock) && WriteReport(report) && ShowFile(lock, report.Path());
}

bool DumpDhcpServer() {
    lock_tool::FileLock lock(kSettingsLock);
    return LockForReading(lock) && ShowFile(lock, GetFilePath(kDhcpServerUnit));
}

bool ShowDhcpLeases(const std::string& mode) {
    lock_tool::FileLock lock(kSettingsLock);
    if (mode == "full")
        return LockForReading(lock) && ShowDatabase(lock);
    Report report(kTitle, "dhcp-server-leases");
    return IsOptionName(mode) && LockForReading(lock) && report.Open() && WriteLeases(mode, report.Path()) &&
           ShowFile(lock, report.Path());
}

} // namespace settings::dhcp_server
