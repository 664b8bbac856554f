#pragma once

#include <string>

namespace routing {

// inet show routing: what the daemon knows of all routes, page by page.
[[nodiscard]] bool ShowRouting();
// inet show routing static [table <number> | table name <name>]
[[nodiscard]] bool ShowStaticRoutes();
[[nodiscard]] bool ShowRouteTable(const std::string& number);
[[nodiscard]] bool ShowRouteTableByName(const std::string& name);

} // namespace routing
