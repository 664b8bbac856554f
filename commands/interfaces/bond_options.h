#pragma once

#include "commands/interfaces/command_frame.h"

#include <string>

namespace interfaces {

// Gives each option whose values are words, and that has none, the value of a new bond. The settings keep
// those alone that the bond's mode has, so that a bond needs them again with another mode.
void FillBondWords(corvanshell::InterfaceEntry& bond);

// Sets an option in the entry of a bond: "mode", "miimon", "ad-select", "lacp-rate", "primary" or
// "xmit-hash-policy". False, reported, when the bond's mode has no such option or the value is none of it.
[[nodiscard]] bool SetOption(InterfaceEdit& bond, const std::string& option, const std::string& value);

} // namespace interfaces
