#pragma once

#include <string>
#include <vector>

namespace interfaces {

// What a bond or slave interface is, line by line; nothing for any other interface. The first line is empty.
std::vector<std::string> BondingInfo(const std::string& name);

// The same on standard output.
void PrintBondingInfo(const std::string& name);

} // namespace interfaces
