#pragma once

#include <string>

// Copies of the cluster file and its guard, "<file>~" beside each, for as long as the file is being edited.

namespace failover {

// One edit at a time. The lock is in a folder that is root's alone.
inline constexpr const char* kEditLock = "/run/failover-edit.lock";

class Backups {
public:
    // Makes both anew, with the files' modes and owners. Those of an edit that was killed stay as they are,
    // since the file is no good then. A failure is reported, and leaves none behind.
    [[nodiscard]] bool Make() const;
    // Puts both back in the place of the files, which takes no room on the disk, unless a file is a link to
    // another one. What can't be put back is reported and stays as a backup.
    [[nodiscard]] bool Restore() const;
    // Removes those whose file is there: any other is the last copy.
    void Remove() const;

    // The file's text before it was edited.
    std::string TextFile() const;
};

// Tells the way out to an administrator whose settings can't be read because of an edit: one that stands
// open, or one that was killed and has left the file at odds with its guard, and its backups.
void TellUnfinishedEdit();

} // namespace failover
