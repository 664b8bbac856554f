#include "shell/change_lock.h"

#include "platform/console.h"
#include "platform/path_list.h"

namespace shell {
namespace {

constexpr const char* kChangeLock = "/run/lock/conf-shell.lock";

} // namespace

ChangeLock::ChangeLock() : lock_(kChangeLock) {}

bool ChangeLock::Acquire() {
    if (lock_.AcquireExclusive(settings_lock_timeout, true))
        return true;
    shell_print_error(
        "another shell is changing the settings, or %s can't be locked: nothing was changed here, "
        "please try again",
        kChangeLock);
    return false;
}

} // namespace shell
