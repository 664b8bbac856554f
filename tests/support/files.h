#pragma once

#include <string>
#include <sys/types.h>

namespace support {

// Writes the whole file, making the folders above it.
void WriteFile(const std::string& path, const std::string& text, mode_t mode = 0644);
void WriteLink(const std::string& path, const std::string& target);

[[nodiscard]] bool Exists(const std::string& path);          // of the link itself, when it is one
[[nodiscard]] std::string ReadFile(const std::string& path); // a file that is not there fails the test
[[nodiscard]] mode_t ModeOf(const std::string& path);        // the permission bits, 0 when it is not there

// Compares a generated file, whole, with tests/golden/<name>. With UPDATE_GOLDEN=1 in the environment the
// expected file is written instead: read the difference in git before you commit it.
void ExpectGolden(const std::string& generated, const std::string& name);

} // namespace support
