#include "records/common_conf_struct.h"

#include "front/helpers/settings_lock.h"
#include "platform/descriptor.h"
#include "platform/messages.h"
#include "platform/path_list.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <ostream>
#include <unistd.h>

namespace corvanshell {
namespace {

constexpr const char* kSessionTimeout = "SESSION_TIMEOUT";
constexpr const char* kMaxRemoteSessions = "MAX_REMOTE_SESSIONS";
constexpr const char* kFlags[] = {
    "HTTPPROXY", "DNS", "NTP", "DHCP_RELAY", "DHCP_SERVER", "VPN_PERFMODE_SINGLE", "REBOOTSCHEDULE",
};

constexpr int kLockTries = 50;
constexpr useconds_t kLockPause = 100000; // microseconds

bool LockPatiently(POSIX_File::SoftLock& lock) {
    for (int i = 0; i < kLockTries; ++i) {
        if (lock.Lock(F_WRLCK, false))
            return true;
        usleep(kLockPause);
    }
    return false;
}

} // namespace

CommonConfStruct::CommonConfStruct() : BasicConfStruct(path_list::common_settings, true) {
    for (const char* flag : kFlags)
        SetFlag(flag, false);
    Read();
}

bool CommonConfStruct::ParseValue(const std::string& key, const std::string& value) {
    if (key == kSessionTimeout)
        session_timeout = std::strtoul(value.c_str(), nullptr, 10);
    else if (key == kMaxRemoteSessions)
        max_remote_sessions = std::strtoul(value.c_str(), nullptr, 10);
    else
        return false;
    return true;
}

bool CommonConfStruct::ParseLine(const std::string& /*line*/, const std::string& /*key*/,
                                 const std::string& /*value*/, const Words& /*tokens*/) {
    return false;
}

bool CommonConfStruct::Write() {
    lock_tool::FileLock lock(path_list::settings_lock); // given back behind the soft lock
    const Descriptor file(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (file.Get() < 0)
        return RefuseInLog("%s: failed to open: %s", path, std::strerror(errno));
    POSIX_File::SoftLock soft_lock(file.Get(), F_WRLCK, false);
    if (!LockPatiently(soft_lock))
        return RefuseInLog("cannot set write lock on %s", path);
    return LockForChange(lock) && WriteFile(false);
}

void CommonConfStruct::WriteAll(std::ostream& output) const {
    output << kSessionTimeout << '\t' << session_timeout << '\n';
    output << kMaxRemoteSessions << '\t' << max_remote_sessions << '\n';
    WriteFlags(output);
    WriteLines(output);
}

} // namespace corvanshell
