#pragma once

#include <set>
#include <string>

namespace corvanshell {

// Which services may not be switched on in which setting.
struct ServiceRestrictions {
    std::set<std::string> single_only;     // not in cluster mode
    std::set<std::string> multi_disk_only; // only where the licence grants them
};

// Reads a list of services into the set, in the place of what it held: one name a line, up to its first
// comma. A list that can't be opened is logged and restricts nothing.
void ReadRestrictedList(std::set<std::string>& services, const std::string& path);

// Reads both of the appliance's lists.
void ReadRestrictions(ServiceRestrictions& restrictions);

// Whether a list forbids the service here, asked without a word.
[[nodiscard]] bool IsServiceRestricted(const ServiceRestrictions& restrictions, const std::string& service);

// Whether the service may be switched on. A refusal is logged and told on standard output.
[[nodiscard]] bool IsServicePermitted(const ServiceRestrictions& restrictions, const std::string& service);

} // namespace corvanshell
