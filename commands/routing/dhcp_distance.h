#pragma once

#include <string>

namespace routing {

// inet dhcp client route-distance <distance> [default-route <default>]; "" is an argument left out.
[[nodiscard]] bool SetDhcpRouteDistance(const std::string& distance, const std::string& default_distance);

// inet show routing dhcp
[[nodiscard]] bool ShowDhcpRoutes();
// inet show dhcp client: the distances, and what each interface takes from DHCP.
[[nodiscard]] bool ShowDhcpClient();

} // namespace routing
