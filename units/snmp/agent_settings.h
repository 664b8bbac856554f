#pragma once

#include "units/snmp/settings_access.h"

#include <string>

// The agent's single settings. A switch is on when its value is exactly "on".

namespace snmp {

// A place that holds one setting: an attribute of the element, or its text when `attribute` is null.
struct Setting {
    const char* unit;
    const char* xpath;
    const char* attribute;
};

inline constexpr Setting kAutostart = {kCommonUnit, "/unit/agent/autostart", nullptr};
inline constexpr Setting kLogLevel = {kCommonUnit, "/unit/agent/log", "level"};
inline constexpr Setting kProtocol = {kCommonUnit, "/unit/agent/port", "protocol"};
inline constexpr Setting kPort = {kCommonUnit, "/unit/agent/port", nullptr};
inline constexpr Setting kV2Mode = {kCommonUnit, "/unit/agent", "v2_mode"};
inline constexpr Setting kV3Mode = {kCommonUnit, "/unit/agent", "v3_mode"};
inline constexpr Setting kV2Traps = {kCommonUnit, "/unit/agent", "v2_traps"};
inline constexpr Setting kV3Traps = {kCommonUnit, "/unit/agent", "v3_traps"};
inline constexpr Setting kSysName = {kUniqueUnit, "/unit/agent", "sysname"};
inline constexpr Setting kSysContact = {kCommonUnit, "/unit/agent", "syscontact"};
inline constexpr Setting kSysLocation = {kUniqueUnit, "/unit/agent", "syslocation"};

// The setting in a loaded file of its unit, "" when it is absent.
std::string GetSetting(const settings::File& file, const Setting& setting);
[[nodiscard]] bool IsOn(const settings::File& file, const Setting& setting);

[[nodiscard]] bool GetAutostart();
std::string GetLogLevel(); // "debug", "info", "error", "critical" or "off"
std::string GetProtocol(); // "udp" or "tcp"
std::string GetPort();     // decimal
[[nodiscard]] bool IsV2Mode();
[[nodiscard]] bool IsV3Mode();
[[nodiscard]] bool IsV2Traps();
[[nodiscard]] bool IsV3Traps();
std::string GetSysName();
std::string GetSysContact();
std::string GetSysLocation();

// The element must be there. A mode that is as asked already is told on the terminal and is false.
[[nodiscard]] bool SetAutostart(const std::string& value); // "off" unless it is "on"
[[nodiscard]] bool SetV2Mode(const std::string& value);
[[nodiscard]] bool SetV3Mode(const std::string& value);
[[nodiscard]] bool EnableV2Traps();
[[nodiscard]] bool DisableV2Traps();
[[nodiscard]] bool EnableV3Traps();
[[nodiscard]] bool DisableV3Traps();
[[nodiscard]] bool SetLogLevel(const std::string& level);
[[nodiscard]] bool SetSysName(const std::string& value);
[[nodiscard]] bool SetSysContact(const std::string& value);
[[nodiscard]] bool SetSysLocation(const std::string& value);

// Refuses the present pair, and a port on which a datagram socket can't be bound, for TCP too. Throws
// std::system_error when there is no socket to try with.
[[nodiscard]] bool SetPort(unsigned long port, const std::string& protocol);

} // namespace snmp
