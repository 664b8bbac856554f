#pragma once

#include <string>
#include <string_view>
#include <vector>

// How a line reaches a daemon of the routing suite: through its terminal, vtysh.

namespace vtysh {

using Lines = std::vector<std::string>;

// A daemon by its name, the words around what is configured there, and the file in which it saves its
// configuration. Zebra is configured in three ways that differ in those words.
struct Daemon {
    const char* name;
    const char* entry;
    const char* exit;
    const char* file;
};

inline constexpr Daemon kZebra{"zebra", "conf t", "end", "/etc/quagga/zebra.conf"};
inline constexpr Daemon kRouteRemoval{"zebra", "configure terminal", "end", kZebra.file};
inline constexpr Daemon kPolicies{"zebra", "configure terminal", "exit", kZebra.file};
inline constexpr Daemon kDgdd{"dgdd", "configure terminal", "end", "/etc/quagga/dgdd.conf"};
inline constexpr Daemon kZdhcpd{"zdhcpd", "conf t", "end", "/etc/quagga/zdhcpd.conf"};

// A question to one daemon, and one to whichever knows the answer, as a shell line:
//     /usr/bin/vtysh -d zebra -c "show running-config"
//     /usr/bin/vtysh -c "show tables static"
std::string QuestionLine(const Daemon& daemon, const std::string& question);
std::string QuestionLine(const std::string& question);

// A change, whose parts are the lines of one command, and the saving of it, as a shell line:
//     /usr/bin/vtysh -d zebra -c "conf t" -c "table 5 VPN" -c "end" -c "write file"
// Nothing in a part may mean something to a shell.
std::string ConfigureLine(const Daemon& daemon, const std::vector<std::string>& parts);

// Runs a shell line. False, with `lines` empty, when its status is not 0.
[[nodiscard]] bool Ask(const std::string& line, Lines& lines);
// The same for a line whose output is of no interest.
[[nodiscard]] bool Send(const std::string& line);

// The same for a question and for a change.
[[nodiscard]] bool Ask(const Daemon& daemon, const std::string& question, Lines& lines);
[[nodiscard]] bool Configure(const Daemon& daemon, const std::vector<std::string>& parts);
// Sends one part without a shell.
[[nodiscard]] bool ConfigureQuietly(const Daemon& daemon, const std::string& part);

// What `cat` shows of the saved configuration: nothing when there is none yet. False when it fails.
[[nodiscard]] bool AskSaved(const Daemon& daemon, Lines& lines);

bool Contains(const std::string& text, std::string_view part);

} // namespace vtysh
