#include "platform/settings_file.h"

#include "files.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool IsWithinLimit(std::size_t size) {
    rlimit limit{};
    if (::getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY || size <= limit.rlim_cur)
        return true;
    errno = EFBIG;
    return false;
}

// The length stays as it is: what is behind the old text would be read with it. A file system that can't
// reserve room is written to all the same.
bool Reserve(int file, std::size_t size) {
    return size == 0 || ::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)) == 0 ||
           errno == EOPNOTSUPP || errno == ENOSYS;
}

} // namespace

bool WriteSettingsFile(const std::string& path, std::string_view text, bool secret) {
    const Descriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY, secret ? 0600 : 0666));
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0 || (secret && ::fchmod(file.Get(), 0600) != 0))
        return false;
    if (!S_ISREG(status.st_mode))
        return linux_platform::WriteAll(file.Get(), text);
    return IsWithinLimit(text.size()) && Reserve(file.Get(), text.size()) &&
           linux_platform::WriteAll(file.Get(), text) &&
           ::ftruncate(file.Get(), static_cast<off_t>(text.size())) == 0 && ::fsync(file.Get()) == 0;
}
