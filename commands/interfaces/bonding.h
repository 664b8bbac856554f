#pragma once

#include <string>
#include <vector>

// The actions of bonds. Unlike the other interface commands they write the settings first and run
// /sbin/bonding.sh behind it: when the script fails, settings and system are apart, and the error tells it.

namespace interfaces {

// inet bonding add <number> <mode> slaves <slave>... Empty slaves are left out; there may be three.
[[nodiscard]] bool AddBond(const std::string& number, const std::string& mode,
                           const std::vector<std::string>& slaves);
// inet bonding delete <number>. The slaves stay as loose ones.
[[nodiscard]] bool DeleteBond(const std::string& number);
// inet ifconfig <bond> bonding add <slave>, inet ifconfig <bond> bonding delete <slave>
[[nodiscard]] bool AddSlave(const std::string& bond, const std::string& slave);
[[nodiscard]] bool DeleteSlave(const std::string& bond, const std::string& slave);
// inet ifconfig <bond> bonding <option> <value>
[[nodiscard]] bool SetBondOption(const std::string& bond, const std::string& option,
                                 const std::string& value);

} // namespace interfaces
