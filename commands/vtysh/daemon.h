#pragma once

#include "platform/locks.h"

#include <string>
#include <string_view>
#include <vector>

// Talking to the routing daemons.

namespace vtysh {

using Lines = std::vector<std::string>;

// Runs a shell line. False, with `lines` empty, when its status is not 0.
[[nodiscard]] bool Ask(const std::string& command, Lines& lines);
// The same for a line whose output is of no interest.
[[nodiscard]] bool Send(const std::string& command);

// Takes the settings lock for a change or a listing. False, with a warning in the log, when it is not
// granted. A record of settings takes the same lock to read, so none may be read while this is held.
[[nodiscard]] bool LockSettings(lock_tool::FileLock& lock);

// The configuration mode of a daemon ("zebra"), the parts of a command and the saving of it, as one shell
// line:
//     /usr/bin/vtysh -d zebra -c "conf t" -c "table 5 VPN" -c "end" -c "write file"
std::string ConfigureLine(const std::string& daemon, const std::vector<std::string>& parts);

bool Contains(const std::string& text, std::string_view part);
std::string UpperCase(std::string text);

} // namespace vtysh
