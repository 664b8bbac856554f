#pragma once

#include <string>

namespace linux_platform {

// The SHA-256 digest of an open file from its place on, as 64 lower-case hex digits. Throws
// std::system_error.
std::string Sha256Of(int descriptor);

} // namespace linux_platform
