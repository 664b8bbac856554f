#pragma once

#include <string>

// Files in memory, which collect output without a pipe that could run full.
namespace support {

// A close-on-exec descriptor of an unnamed file that holds `text`, at its start.
[[nodiscard]] int MemoryFile(const std::string& text = "");

// The whole file behind a descriptor, whose position stays where it is.
[[nodiscard]] std::string Contents(int descriptor);

} // namespace support
