#pragma once

#include "records/conf_struct.h"

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
// inet ifconfig <name> class slave
[[nodiscard]] bool SetSlaveClass(const std::string& name);
// inet ifconfig <bond> bonding add <slave>, inet ifconfig <bond> bonding delete <slave>
[[nodiscard]] bool AddSlave(const std::string& bond, const std::string& slave);
[[nodiscard]] bool DeleteSlave(const std::string& bond, const std::string& slave);
// inet ifconfig <bond> bonding <option> <value>
[[nodiscard]] bool SetBondOption(const std::string& bond, const std::string& option,
                                 const std::string& value);

// Takes an interface's addresses and its MTU from the system and from its entry, so that it can become a
// slave, or a bond can be removed. Asks when it has addresses; every refusal is told.
[[nodiscard]] bool ClearInterfaceForBonding(const corvanshell::CConfStruct& record, const std::string& name,
                                            corvanshell::InterfaceEntry& entry);

} // namespace interfaces
