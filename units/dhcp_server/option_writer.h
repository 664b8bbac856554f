#pragma once

#include "settings/node.h"
#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/tree_writer.h"

// The options of a walk.

namespace settings::dhcp_server {

// Checks one option of the area, for the daemon, and writes it.
[[nodiscard]] bool WriteOptionNode(TreeWriter& writer, const Area& area, Node option);

// Declares each custom option below the area once, by its number, and checks that a number has one type.
[[nodiscard]] bool WriteCustomDeclarations(TreeWriter& writer, const Area& area);

} // namespace settings::dhcp_server
