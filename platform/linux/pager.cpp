#include "platform/pager.h"

#include "files.h"
#include "spawn.h"

#include "platform/console.h"

#include <cerrno>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr const char* pager_program = "/usr/bin/less";

} // namespace

ShellPager::~ShellPager() {
    wait();
}

// On a terminal the text is collected in memory and shown at the end: a pager at the other end of a pipe
// would make the writer wait for the administrator, with its locks, and end it by SIGPIPE.
std::FILE* ShellPager::open() {
    wait();
    if (!::isatty(STDOUT_FILENO))
        return stream_ = stdout;
    linux_platform::Descriptor memory(::memfd_create("pager", MFD_CLOEXEC));
    if (::access(pager_program, X_OK) != 0 || !memory.IsOpen()) {
        shell_print_error("failed to start pager %s: %s", pager_program, std::strerror(errno));
        return nullptr;
    }
    stream_ = ::fdopen(memory.get(), "w");
    if (stream_)
        memory.release();
    return stream_;
}

bool ShellPager::print_file(const std::string& path) {
    if (!stream_)
        return false;
    const linux_platform::Descriptor file = linux_platform::OpenRegular(path);
    char buffer[16384];
    long count = file.IsOpen() ? 0 : -1;
    while (file.IsOpen() && (count = linux_platform::ReadSome(file.get(), buffer, sizeof buffer)) > 0)
        std::fwrite(buffer, 1, static_cast<std::size_t>(count), stream_);
    if (count < 0)
        shell_print_error("%s: failed to read: %s", path.c_str(), std::strerror(errno));
    return count == 0;
}

void ShellPager::wait() {
    std::FILE* const stream = std::exchange(stream_, nullptr);
    if (!stream)
        return;
    if (std::fflush(stream) != 0 && errno != EPIPE)
        shell_print_error("failed to write to stream: %s", std::strerror(errno));
    if (stream == stdout)
        return;
    ::lseek(::fileno(stream), 0, SEEK_SET);
    // In its secure mode the pager starts no shell and opens no other file. A text of one page is just shown.
    const int status = linux_platform::RunProgram({"/usr/bin/env", "LESSSECURE=1", pager_program, "-FX"},
                                                  {::fileno(stream), -1, -1});
    if (status != 0)
        shell_print_error("pager %s failed with status %d", pager_program,
                          linux_platform::ExitStatus(status));
    std::fclose(stream);
}
