#pragma once

#include "records/conf_struct.h"

#include <string>

namespace interfaces {

// inet ifconfig <name> class slave. Its addresses go, after a question.
[[nodiscard]] bool SetSlaveClass(const std::string& name);

// Takes an interface's addresses and its MTU from the system and from its entry, so that it can become a
// slave, or a bond can be removed. Asks when it has addresses; every refusal is told.
[[nodiscard]] bool ClearInterfaceForBonding(const corvanshell::CConfStruct& record, const std::string& name,
                                            corvanshell::InterfaceEntry& entry);

} // namespace interfaces
