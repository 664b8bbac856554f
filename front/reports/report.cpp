#include "front/reports/report.h"

#include "front/helpers/temporary.h"
#include "platform/console.h"
#include "platform/pager.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

bool ShowFile(lock_tool::FileLock& lock, const std::string& path) {
    ShellPager pager;
    if (pager.open() == nullptr)
        return false;
    const bool shown = pager.print_file(path);
    lock.Release();
    return pager.wait() && shown;
}

Report::Report(const char* title, const char* name)
    : title_(title), path_(std::string("/tmp/") + name + "-XXXXXX") {}

bool Report::ReportFailure(const char* what) const {
    shell_print_error("%s: failed to %s temporary file: %s", title_, what, std::strerror(errno));
    return false;
}

bool Report::Open() {
    const int descriptor = MakeTemporary(path_);
    if (descriptor < 0)
        return ReportFailure("create");
    stream_.reset(fdopen(descriptor, "w+"));
    if (stream_ != nullptr)
        return true;
    close(descriptor);
    return ReportFailure("access");
}

bool Report::Sync() {
    std::FILE* out = stream_.get();
    const bool written = std::fflush(out) == 0 && std::ferror(out) == 0 && fsync(fileno(out)) == 0;
    return written || ReportFailure("write");
}
