#pragma once

#include "platform/descriptor.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace linux_platform {

// Opens a regular file for reading; never waits, whatever stands at the path. When it can't be opened,
// errno tells why (EINVAL: no regular file).
Descriptor OpenRegular(const std::string& path);

// read(2) until a signal does not come between. The number of bytes, 0 at the end, -1 with errno.
long ReadSome(int descriptor, char* buffer, std::size_t size);

// Writes all of the text. False with errno.
[[nodiscard]] bool WriteAll(int descriptor, std::string_view text);

// Reads a whole regular file of at most `limit` bytes. 0, or the error's number (EFBIG: it is longer).
[[nodiscard]] int ReadText(const std::string& path, std::size_t limit, std::string& text);

} // namespace linux_platform
