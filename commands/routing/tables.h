#pragma once

#include "commands/vtysh/daemon.h"

#include <string>

// Routing tables, by number and by name. Each function asks the daemon afresh and prints nothing of a
// failure. Names are upper-cased before they are compared.

namespace routing {

using vtysh::Lines;

// The daemon's list, one table a line: "Table VPN (ID 5):", "Unnamed table (ID 7):".
[[nodiscard]] bool ListTables(Lines& lines);

// False for a table without a name, too.
bool TableExists(const std::string& number);
bool TableHasRoutes(const std::string& number);
bool IsTableNameUnique(const std::string& name);
bool TableNameMatches(const std::string& number, const std::string& name);

// "" when there is no such table.
std::string GetTableNumber(const std::string& name);
std::string GetTableName(const std::string& number);
Lines GetTableNumbers();

// What stands between "(ID " and ")" in a line of the list; "" when it has no such place.
std::string TakeTableNumber(const std::string& line);

[[nodiscard]] bool AddTable(const std::string& name, const std::string& number);

// Whether no policy rule refers to the table. False as well when the daemon can't be asked.
bool IsTableUnreferenced(const std::string& name);

// Refuses, on the terminal, while a policy rule refers to the table.
[[nodiscard]] bool DeleteTable(const std::string& number);

// Whether a route may leave the table: false when it is the last one and a policy rule needs the table.
bool CanDeleteRouteOfTable(const std::string& number);

} // namespace routing
