#pragma once

#include "settings/file.h"

#include <cstdio>

namespace snmp {

// Writes how the nodes of the cluster reach each other's agent, and managers the agent of either node.
// Nothing where the settings have no nodes. False when a line had to be left out for a value in it. Every
// failure is reported.
[[nodiscard]] bool WriteClusterLines(const settings::File& file, std::FILE* out);

} // namespace snmp
