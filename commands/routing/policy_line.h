#pragma once

#include <string>

namespace routing {

// Lines of the policy configuration as one shell line:
//     /usr/bin/vtysh -d "zebra" -c "configure terminal" -c "ip policy vpn" -c "exit" -c "write file"
// Each part is `-c "..."`.
inline std::string PolicyLine(const std::string& parts) {
    return "/usr/bin/vtysh -d \"zebra\" -c \"configure terminal\" " + parts +
           " -c \"exit\" -c \"write file\"";
}

} // namespace routing
