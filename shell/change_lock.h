#pragma once

#include "platform/locks.h"

namespace shell {

// One shell at a time changes anything: an action reads the settings, asks, and writes them, and takes the
// settings' own locks for the single steps alone.
class ChangeLock {
public:
    ChangeLock();

    // Waits as long as for the settings. False, told on the terminal, when another shell is still busy.
    [[nodiscard]] bool Acquire();

private:
    lock_tool::FileLock lock_;
};

} // namespace shell
