#include "digest.h"

#include "files.h"

#include <cerrno>
#include <sha2.h>
#include <system_error>

namespace linux_platform {

std::string Sha256Of(int descriptor) {
    SHA2_CTX context;
    SHA256Init(&context);
    char buffer[16384];
    long count = 0;
    while ((count = ReadSome(descriptor, buffer, sizeof buffer)) > 0)
        SHA256Update(&context, reinterpret_cast<const std::uint8_t*>(buffer),
                     static_cast<std::size_t>(count));
    if (count < 0)
        throw std::system_error(errno, std::generic_category());
    char text[SHA256_DIGEST_STRING_LENGTH];
    return SHA256End(&context, text);
}

} // namespace linux_platform
