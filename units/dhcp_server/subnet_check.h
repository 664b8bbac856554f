#pragma once

#include "units/dhcp_server/tree_writer.h"

#include <string>

// The checks of a subnet as a whole.

namespace settings::dhcp_server {

struct SubnetTexts {
    std::string address;
    std::string netmask;
    std::string interface;
    bool is_listen;
};

// Checks what a subnet's node says of itself: its interfaces, its network and that its ranges keep apart. The
// area is bound to the subnet's level, `parent` is where the subnet stands. Every fault is reported.
[[nodiscard]] bool CheckSubnet(TreeWriter& writer, const Area& parent, const Area& area, Node node,
                               const SubnetTexts& texts);

} // namespace settings::dhcp_server
