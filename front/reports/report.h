#pragma once

#include "front/helpers/settings_lock.h"
#include "front/helpers/stream.h"

#include <string>

// What a unit shows to the administrator, page by page, while its settings are locked.

// Shows a file. The pager is waited for behind the lock, so that a reader at its prompt holds up nobody.
[[nodiscard]] bool ShowFile(lock_tool::FileLock& lock, const std::string& path);

// A report on its way to the pager: a file /tmp/<name>-XXXXXX that goes with this object.
class Report {
public:
    // `title` is the unit's word in messages, "DHCP server".
    Report(const char* title, const char* name);
    ~Report();
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    // Makes the file. A failure is reported.
    [[nodiscard]] bool Open();
    // Brings what was written to disk. A failure is reported.
    [[nodiscard]] bool Sync();

    std::FILE* Out() const { return stream_.get(); }
    const std::string& Path() const { return path_; }

private:
    bool ReportFailure(const char* what) const;

    const char* title_;
    std::string path_;
    bool created_ = false;
    Stream stream_;
};
