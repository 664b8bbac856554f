#include "digest.h"

#include "files.h"

#include <cerrno>
#include <memory>
#include <openssl/evp.h>
#include <stdexcept>
#include <system_error>

namespace linux_platform {

std::string Sha256Of(int descriptor) {
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    bool good = context && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1;
    char buffer[16384];
    long count = 0;
    while (good && (count = ReadSome(descriptor, buffer, sizeof buffer)) > 0)
        good = EVP_DigestUpdate(context.get(), buffer, static_cast<std::size_t>(count)) == 1;
    if (count < 0)
        throw std::system_error(errno, std::generic_category());
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (!good || EVP_DigestFinal_ex(context.get(), digest, &length) != 1)
        throw std::runtime_error("failed to compute SHA-256");
    std::string text;
    for (unsigned int i = 0; i < length; ++i) {
        text += "0123456789abcdef"[digest[i] >> 4];
        text += "0123456789abcdef"[digest[i] & 15];
    }
    return text;
}

} // namespace linux_platform
