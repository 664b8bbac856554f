#pragma once

#include "platform/locks.h"

// The settings lock, waited for as long as settings locks are. Who does not get it says why: another process
// holds it, or it can't be locked at all.

// To read settings. A refusal is told on the terminal, and errno tells it as well.
[[nodiscard]] bool LockForReading(lock_tool::FileLock& lock);

// To change them, or to ask a daemon that changes with them. A refusal is told in the log. A record takes the
// same lock to read, so none may be read while this is held.
[[nodiscard]] bool LockForChange(lock_tool::FileLock& lock);
