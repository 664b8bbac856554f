#pragma once

#include "front/helpers/settings_lock.h"
#include "front/helpers/stream.h"

#include <string>

// What a unit shows to the administrator, page by page, while its settings are locked.

// Shows a file. The pager is waited for behind the lock, so that a reader at its prompt holds up nobody.
// False when it can't be shown.
[[nodiscard]] bool ShowFile(lock_tool::FileLock& lock, const std::string& path);

// A report on its way to the pager: a file that is made as /tmp/<name>-XXXXXX and goes with this object, or
// with the process.
class Report {
public:
    // `title` is the unit's word in messages, "DHCP server".
    Report(const char* title, const char* name);
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    // Makes the file. A failure is reported.
    [[nodiscard]] bool Open();
    // Brings what was written to disk. A failure is reported.
    [[nodiscard]] bool Sync();

    std::FILE* Out() const { return stream_.get(); }
    // By which the file can be opened as long as this object lives.
    const std::string& Path() const { return path_; }

private:
    bool ReportFailure(const char* what) const;

    const char* title_;
    std::string path_;
    Stream stream_;
};
