#include "front/helpers/settings_lock.h"

#include "platform/messages.h"
#include "platform/path_list.h"

#include <cerrno>
#include <cstring>

bool LockForReading(lock_tool::FileLock& lock) {
    if (lock.AcquireShared(settings_lock_timeout, true))
        return true;
    const int error = errno;
    if (error == EWOULDBLOCK)
        PrintError("settings file is locked by another process, please try later");
    else
        PrintError("settings file can't be locked: %s", std::strerror(error));
    errno = error;
    return false;
}

bool LockForChange(lock_tool::FileLock& lock) {
    if (lock.AcquireExclusive(settings_lock_timeout, true))
        return true;
    if (errno == EWOULDBLOCK)
        LogWarning("config is locked by another process, please try again");
    else
        LogWarning("config can't be locked: %s", std::strerror(errno));
    return false;
}
