#include "commands/vtysh/daemon.h"

#include "platform/log.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <algorithm>
#include <cctype>

namespace vtysh {

bool Ask(const std::string& command, Lines& lines) {
    lines.clear();
    if (corvanshell::run(command.c_str(), lines) == 0)
        return true;
    lines.clear();
    return false;
}

bool Send(const std::string& command) {
    std::string output;
    return corvanshell::run(command.c_str(), output) == 0;
}

bool LockSettings(lock_tool::FileLock& lock) {
    if (lock.AcquireExclusive(settings_lock_timeout, true))
        return true;
    shell_log_warning("config is locked by another process, please try again");
    return false;
}

std::string ConfigureLine(const std::string& daemon, const std::vector<std::string>& parts) {
    std::string line = "/usr/bin/vtysh -d " + daemon + " -c \"conf t\"";
    for (const std::string& part : parts)
        line += " -c \"" + part + "\"";
    return line + " -c \"end\" -c \"write file\"";
}

bool Contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

std::string UpperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    return text;
}

} // namespace vtysh
