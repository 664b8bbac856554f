#pragma once

#include "records/conf_struct.h"

#include <string>
#include <vector>

// What an interface is to others: a bond, a slave of one, the parent of VLAN children.

namespace interfaces {

// Roles that a command can't work with.
constexpr unsigned int kRefuseBond = 1;
constexpr unsigned int kRefuseBoundSlave = 2;
constexpr unsigned int kRefuseLooseSlave = 4;
constexpr unsigned int kRefuseSlave = kRefuseBoundSlave | kRefuseLooseSlave;

// The guard of the interface commands: true when the interface has a role that `mask` refuses. The reason is
// told when `report` is set. The first form reads the record, and refuses with one that can't be read.
[[nodiscard]] bool IsInterfaceRoleRefused(const std::string& name, unsigned int mask, bool report);
[[nodiscard]] bool IsInterfaceRoleRefused(const corvanshell::CConfStruct& record, const std::string& name,
                                          unsigned int mask, bool report);

// An interface that is not in the record has no class.
corvanshell::InterfaceEntry FindEntry(const corvanshell::CConfStruct& record, const std::string& name);

// False, reported, when the interface is no slave.
[[nodiscard]] bool CheckSlaveClass(const std::string& name, const corvanshell::InterfaceEntry& entry);
// False, reported, when it is no slave of that bond; `role` is what it would be there.
[[nodiscard]] bool CheckSlaveOf(const std::string& bond, const std::string& name,
                                const corvanshell::InterfaceEntry& entry, const char* role);
// A slave's master, in the words of messages.
std::string MasterText(const corvanshell::InterfaceEntry& entry);

// Interfaces of the record, by name.
std::vector<std::string> ListVlanChildren(const corvanshell::CConfStruct& record, const std::string& parent);
std::vector<std::string> ListSlaves(const corvanshell::CConfStruct& record, const std::string& bond);

} // namespace interfaces
