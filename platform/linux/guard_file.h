#pragma once

#include <string>
#include <string_view>
#include <vector>

// The text of a guard: "<64 hex digits>  <absolute path>" a line, as sha256sum(1) writes it.

namespace linux_platform {

struct GuardLine {
    std::string digest; // lower-case hex digits
    std::string path;
};

struct Guard {
    bool damaged = false;         // a line is of no such form, or the guard can't be read at all
    int error = 0;                // why the system could not read it
    std::vector<GuardLine> lines; // those of the right form

    const GuardLine* find(std::string_view path) const;
    // Replaces the path's line, or adds it at the end.
    void set(std::string_view path, std::string digest);
    void erase(std::string_view path);
};

// A guard that is missing has no lines and is not damaged.
Guard ReadGuard(const std::string& path);

// Puts the text of the lines in the guard's place in one step, or writes onto it where there is no room for
// another file; a link is followed. Throws std::system_error, and then the old guard is as it was.
void WriteGuard(const std::string& path, const std::vector<GuardLine>& lines);

} // namespace linux_platform
