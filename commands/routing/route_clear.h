#pragma once

#include <string>

namespace routing {

// Deletes, after a question, the static routes of one table, or all of them when the number is "".
[[nodiscard]] bool RouteClear(const std::string& number, const std::string& name);

// inet route clear, with nothing, "table <number>" and "table name <name>" behind it.
[[nodiscard]] bool RouteClearAll();
[[nodiscard]] bool RouteClearTable(const std::string& number);
[[nodiscard]] bool RouteClearTableByName(const std::string& name);

} // namespace routing
