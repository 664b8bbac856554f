#pragma once

#include <string>

namespace interfaces {

// inet ifconfig <name> mtu <value>: a number, or "auto" or "" for the default. A trunk's VLAN children
// follow.
[[nodiscard]] bool SetMtu(const std::string& name, const std::string& value);
// inet ifconfig <name> speed <speed> duplex <duplex> autoneg <autoneg>
[[nodiscard]] bool SetSpeed(const std::string& name, const std::string& speed, const std::string& duplex,
                            const std::string& autoneg);
// inet ifconfig <name> speed auto
[[nodiscard]] bool SetSpeedAuto(const std::string& name);

} // namespace interfaces
