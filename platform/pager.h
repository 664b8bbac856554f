#pragma once

#include <sys/types.h>

#include <cstdio>
#include <string>

// Shows a text to the administrator page by page, or plainly where there is no terminal.
class ShellPager {
public:
    ShellPager() = default;
    ~ShellPager(); // waits
    ShellPager(const ShellPager&) = delete;
    ShellPager& operator=(const ShellPager&) = delete;

    // The stream that the pager shows, owned by it; null when it can't be started.
    [[nodiscard]] std::FILE* open();
    // Copies a file to the open pager. False when the file can't be read.
    bool print_file(const std::string& path);
    // Ends the text and waits until the administrator has left the pager.
    void wait();

private:
    std::FILE* stream_ = nullptr;
    pid_t pager_ = 0;
};
