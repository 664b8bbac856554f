#pragma once

#include <cstdio>
#include <string>

// Shows a text to the administrator page by page, or plainly where there is no terminal.
class ShellPager {
public:
    ShellPager() = default;
    ~ShellPager(); // waits
    ShellPager(const ShellPager&) = delete;
    ShellPager& operator=(const ShellPager&) = delete;

    // The stream that takes the text, owned by the pager; null when there is none. Writing to it never
    // waits for the administrator.
    [[nodiscard]] std::FILE* open();
    // Copies a file to the open pager. False when the file can't be read.
    bool print_file(const std::string& path);
    // Ends the text, shows it, and waits until the administrator has left the pager. False when it can't be
    // shown; that is reported, unless the reader at the other end of a pipe has left.
    bool wait();

private:
    std::FILE* stream_ = nullptr;
};
