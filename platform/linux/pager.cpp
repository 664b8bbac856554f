#include "platform/pager.h"

#include "files.h"
#include "spawn.h"

#include "platform/messages.h"

#include <cerrno>
#include <cstring>
#include <stdio_ext.h>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr const char* pager_program = "/usr/bin/less";

// In its secure mode the pager starts no shell and opens no other file. A text of one page is just shown.
bool RunPager(int text) {
    const int status =
        linux_platform::RunProgram({"/usr/bin/env", "LESSSECURE=1", pager_program, "-FX"}, {text, -1, -1});
    if (status != 0)
        PrintError("pager %s failed with status %d", pager_program, linux_platform::ExitStatus(status));
    return status == 0;
}

// What can't be written is dropped, so that it is told once.
bool CopyToOutput(int text) {
    char buffer[16384];
    bool written = true;
    for (long count = 0; written && (count = linux_platform::ReadSome(text, buffer, sizeof buffer)) > 0;)
        written = std::fwrite(buffer, 1, static_cast<std::size_t>(count), stdout) ==
                  static_cast<std::size_t>(count);
    if (written && std::fflush(stdout) == 0)
        return true;
    if (errno != EPIPE)
        PrintError("failed to write to stream: %s", std::strerror(errno));
    ::__fpurge(stdout);
    return false;
}

} // namespace

ShellPager::~ShellPager() {
    wait();
}

// The text is collected in memory and shown at the end: a pager, or the reader of a pipe, would make the
// writer wait, with its locks.
std::FILE* ShellPager::open() {
    wait();
    const bool has_pager = ::isatty(STDOUT_FILENO) == 0 || ::access(pager_program, X_OK) == 0;
    Descriptor memory(has_pager ? ::memfd_create("pager", MFD_CLOEXEC) : -1);
    if (!memory.IsOpen()) {
        PrintError("failed to start pager %s: %s", pager_program, std::strerror(errno));
        return nullptr;
    }
    stream_ = ::fdopen(memory.Get(), "w");
    if (stream_)
        memory.Release();
    return stream_;
}

bool ShellPager::print_file(const std::string& path) {
    if (!stream_)
        return false;
    const Descriptor file = linux_platform::OpenRegular(path);
    char buffer[16384];
    long count = file.IsOpen() ? 0 : -1;
    while (file.IsOpen() && (count = linux_platform::ReadSome(file.Get(), buffer, sizeof buffer)) > 0)
        std::fwrite(buffer, 1, static_cast<std::size_t>(count), stream_);
    if (count < 0)
        PrintError("%s: failed to read: %s", path, std::strerror(errno));
    return count == 0;
}

bool ShellPager::wait() {
    std::FILE* const stream = std::exchange(stream_, nullptr);
    if (!stream)
        return true;
    bool shown = std::fflush(stream) == 0;
    const int text = ::fileno(stream);
    ::lseek(text, 0, SEEK_SET);
    if (!shown)
        PrintError("failed to write to stream: %s", std::strerror(errno));
    else
        shown = ::isatty(STDOUT_FILENO) != 0 ? RunPager(text) : CopyToOutput(text);
    std::fclose(stream);
    return shown;
}
