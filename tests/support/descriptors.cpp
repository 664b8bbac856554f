#include "tests/support/descriptors.h"

#include <cstdio>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

namespace support {

int MemoryFile(const std::string& text) {
    const int file = memfd_create("text", MFD_CLOEXEC);
    if (file < 0 || pwrite(file, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) {
        std::perror("memfd_create");
        std::abort();
    }
    return file;
}

std::string Contents(int descriptor) {
    std::string contents;
    char buffer[4096];
    ssize_t got = 0;
    while ((got = pread(descriptor, buffer, sizeof buffer, static_cast<off_t>(contents.size()))) > 0) {
        contents.append(buffer, static_cast<size_t>(got));
    }
    return contents;
}

} // namespace support
