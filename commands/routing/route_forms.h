#pragma once

#include <string>

// The forms of the route commands that name a table instead of giving its number.

namespace routing {

// Looks the number up, in a store of its own: the action that follows opens another one. A table that doesn't
// exist gives "". False, told on the terminal, on a passive node and for what can't be a name.
[[nodiscard]] bool FindTableNumber(const std::string& name, std::string& number);

// The number behind what is typed of a table: its number, or its name alone, which is looked up; the main
// table's when neither is typed.
[[nodiscard]] bool ResolveTable(const std::string& name, std::string& number);

} // namespace routing
