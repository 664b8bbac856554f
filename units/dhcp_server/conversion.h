#pragma once

#include <string>

namespace settings::dhcp_server {

// Makes the unit's settings file anew from an older daemon's, "<key> <value>..." or "option <key> <value>..."
// a line with "#" before comments. The network record is taken from the folder of `path`, and the process
// stays switched to it: the file belongs to a saved settings tree. A file without an interface leaves no
// settings file. Failures are reported.
[[nodiscard]] bool ConvertUdhcpdSettings(const std::string& path);

} // namespace settings::dhcp_server
