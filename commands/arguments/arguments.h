#pragma once

#include <initializer_list>
#include <string>

// What an argument of a command may look like before it goes into a shell line: nothing that passes can end a
// word, a quoted text or a command there.
namespace arguments {

bool IsNumber(const std::string& text);        // 1 to 10 decimal digits
bool IsAddress(const std::string& text);       // dotted quad
bool IsHostAddress(const std::string& text);   // the same, without loopback, multicast and what is reserved
bool IsNetmask(const std::string& text);       // dotted quad without holes
bool IsNetwork(const std::string& text);       // an address, alone or with "/" and a prefix length
bool IsName(const std::string& text);          // 1 to 63 letters, digits, "-", "_" and "."
bool IsInterfaceName(const std::string& text); // what the kernel takes, without what a shell would read
bool IsDgdText(const std::string& text);       // 1 to 63 letters, digits and "-"
bool IsMtu(const std::string& text);           // 1 to 5 digits, or "auto" or "" for the default
bool IsMetric(const std::string& text);        // a number, or "none" for the default
bool IsOnOff(const std::string& text);

struct Argument {
    const std::string& text;
    bool (*is_good)(const std::string& text);
    const char* what;      // "next hop"
    bool optional = false; // "" is an argument left out
};

// False, told on the terminal, at the first argument that is not what it should be.
[[nodiscard]] bool Check(std::initializer_list<Argument> arguments);

} // namespace arguments
