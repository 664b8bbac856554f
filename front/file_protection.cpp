#include "front/file_protection.h"

#include "platform/guards.h"
#include "platform/locks.h"
#include "platform/path_list.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr char kGuardSuffix[] = ".crg";
constexpr std::size_t kGuardNameSize = PATH_MAX + sizeof kGuardSuffix - 1;

constexpr std::size_t kMaximumFiles = 3;

struct GuardRow {
    const std::string& guard;
    corvanshell::GuardMode mode;
    const std::string* files[kMaximumFiles];
};

const char* NameOf(const std::string* path) {
    return path != nullptr ? path->c_str() : nullptr;
}

} // namespace

bool ProtectFile(const char* file) {
    char name[kGuardNameSize];
    char guard[PATH_MAX] = {};
    char target[PATH_MAX] = {};
    std::snprintf(name, sizeof name, "%s%s", file, kGuardSuffix);
    if (realpath(name, guard) == nullptr || realpath(file, target) == nullptr)
        return false;
    std::snprintf(name, sizeof name, "%s%s", target, kGuardSuffix);
    // A guard that is not beside the real file is one that others share.
    const corvanshell::GuardMode mode =
        std::strcmp(name, guard) == 0 ? corvanshell::kGuardOfOneFile : corvanshell::kSharedGuard;
    lock_tool::FileLock lock(path_list::settings_lock);
    return lock.AcquireExclusive(settings_lock_timeout, true) &&
           corvanshell::UpdateGuardFile(guard, mode, file, nullptr);
}

bool ProtectAllSettings() {
    using namespace path_list;
    using corvanshell::kGuardOfOneFile, corvanshell::kSharedGuard;
    const GuardRow rows[] = {
        {settings_guard, kSharedGuard, {&local_settings, &syslog_settings, &common_settings}},
        {http_proxy_settings_guard, kGuardOfOneFile, {&http_proxy_settings}},
        {icap_settings_guard, kGuardOfOneFile, {&icap_settings}},
        {content_filter_settings_guard, kGuardOfOneFile, {&content_filter_settings}},
        {l2overip_guard, kSharedGuard, {&l2overip}},
        {nut_guard, kSharedGuard, {&nut, &upsmon}},
    };
    lock_tool::FileLock lock(settings_lock);
    if (!lock.AcquireExclusive(settings_lock_timeout, true))
        return false;
    for (const GuardRow& row : rows) {
        if (!corvanshell::UpdateGuardFile(row.guard.c_str(), row.mode, NameOf(row.files[0]),
                                          NameOf(row.files[1]), NameOf(row.files[2]), nullptr))
            return false;
    }
    return true;
}
