#pragma once

#include <string>

namespace routing {

// inet route delete: delete static routes of one table, several of them after a question. `table` is a
// number, "254" where the command names no table; `table_name` is "" when it wasn't typed. The last route of
// a table takes the table with it, unless a policy rule needs the table: then the route stays.

// The routes to the destination, those of every table; another table than "254" must be there and hold routes.
[[nodiscard]] bool RouteDeleteTo(const std::string& destination, const std::string& table);
// Those of the table that is named, the main one too.
[[nodiscard]] bool RouteDeleteOfTable(const std::string& destination, const std::string& table,
                                      const std::string& table_name);
[[nodiscard]] bool RouteDeleteMasked(const std::string& destination, const std::string& netmask,
                                     const std::string& table, const std::string& table_name);
[[nodiscard]] bool RouteDeleteNextHop(const std::string& destination, const std::string& netmask,
                                      const std::string& gateway, const std::string& table,
                                      const std::string& table_name);

// The typed command, for the log.
std::string FormatRouteDeleteLog(const std::string& destination, const std::string& netmask,
                                 const std::string& gateway, const std::string& table,
                                 const std::string& table_name);

} // namespace routing
