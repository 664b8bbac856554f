#pragma once

#include <string>
#include <vector>

namespace interfaces {

// What a bond or slave interface is, line by line; nothing for any other interface. The first line is empty.
// A record that can't be read is reported.
std::vector<std::string> BondingInfo(const std::string& name);

// The same on standard output.
void PrintBondingInfo(const std::string& name);

// inet show bonding [<interface>]: the same of one interface, or of all bonds and the slaves of none.
// False, reported, for an interface that is neither.
[[nodiscard]] bool ShowBonding(const std::string& name);

} // namespace interfaces
