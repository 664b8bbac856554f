#include "files.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace linux_platform {

Descriptor OpenRegular(const std::string& path) {
    Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0)
        return Descriptor();
    if (!S_ISREG(status.st_mode)) {
        file.Reset();
        errno = EINVAL;
    }
    return file;
}

long ReadSome(int descriptor, char* buffer, std::size_t size) {
    for (;;) {
        const ssize_t count = ::read(descriptor, buffer, size);
        if (count >= 0 || errno != EINTR)
            return count;
    }
}

bool WriteAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor, text.data(), text.size());
        if (count > 0)
            text.remove_prefix(static_cast<std::size_t>(count));
        else if (count < 0 && errno != EINTR)
            return false;
    }
    return true;
}

int ReadText(const std::string& path, std::size_t limit, std::string& text) {
    const Descriptor file = OpenRegular(path);
    if (!file.IsOpen())
        return errno;
    std::string content;
    char buffer[16384];
    long count = 0;
    while ((count = ReadSome(file.Get(), buffer, sizeof buffer)) > 0) {
        content.append(buffer, static_cast<std::size_t>(count));
        if (content.size() > limit)
            return EFBIG;
    }
    if (count < 0)
        return errno;
    text = std::move(content);
    return 0;
}

} // namespace linux_platform
