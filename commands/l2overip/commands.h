#pragma once

#include <string>

// The actions of the command family `l2overip`. Each tells and logs its outcome, and is true for the outcome
// "OK".

namespace l2overip {

// `what` is "config", "status", "port-table", "mac-address-table", "mac-hash-stats", "clone-fabric-stats" or
// "vswitch-stats". All but the first ask a driver that is in switch mode.
[[nodiscard]] bool Show(const std::string& what);

[[nodiscard]] bool SetInterface(const std::string& device);
[[nodiscard]] bool SetLocalPort(const std::string& number, const std::string& address);
[[nodiscard]] bool SetRemotePort(const std::string& number, const std::string& address);
[[nodiscard]] bool DeleteRemotePort(const std::string& number);
[[nodiscard]] bool SetMacTtl(const std::string& value);
[[nodiscard]] bool SetUnsolicitedFrames(const std::string& value);
// "switch" takes a complete configuration, and starts the driver.
[[nodiscard]] bool SetMode(const std::string& value);

} // namespace l2overip
