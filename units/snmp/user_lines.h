#pragma once

#include "settings/file.h"

#include <cstdio>

namespace snmp {

// Writes the SNMPv3 part: the users and their keys anew into the daemon's persistent file, which keeps its
// count of boots and its old engine ID, their access and trap receivers into the main file. False when a line
// had to be left out for a value in it. Every failure is reported.
[[nodiscard]] bool WriteUsers(const settings::File& file, std::FILE* main_file);

} // namespace snmp
