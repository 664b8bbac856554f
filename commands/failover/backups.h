#pragma once

#include <string>

// Copies of the cluster file and its guard, "<file>~" beside each, for as long as the file is being edited.

namespace failover {

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

} // namespace failover
