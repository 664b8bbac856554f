#pragma once

#include "platform/locks.h"

#include <string>

namespace shell {

// One shell at a time changes anything: an action reads the settings, asks, and writes them, and takes the
// settings' own locks for the single steps alone. Nobody waits for a person: the lock is given back for as
// long as a question stands. When somebody has changed settings meanwhile, what was asked is not true any
// more, and the answer counts as no.
class ChangeLock {
public:
    ChangeLock();
    ~ChangeLock();
    ChangeLock(const ChangeLock&) = delete;
    ChangeLock& operator=(const ChangeLock&) = delete;

    // Waits as long as for the settings. False, told on the terminal, when another shell is still busy.
    [[nodiscard]] bool Acquire();

private:
    void GiveBack();
    bool TakeAgain();

    lock_tool::FileLock lock_;
    std::string settings_; // as they stood when a question was put
};

} // namespace shell
