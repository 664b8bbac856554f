#pragma once

#include <string>

// The forms of the route commands that name a table instead of giving its number.

namespace routing {

// Looks the number up, in a store of its own: the action that follows opens another one. A table that doesn't
// exist gives "". False, told on the terminal, on a passive node and for what can't be a name.
[[nodiscard]] bool FindTableNumber(const std::string& name, std::string& number);

[[nodiscard]] bool RouteAddToTableNamed(const std::string& destination, const std::string& netmask,
                                        const std::string& gateway, const std::string& table_name,
                                        const std::string& distance, const std::string& weight);
[[nodiscard]] bool RouteDeleteMaskedOfTableNamed(const std::string& destination, const std::string& netmask,
                                                 const std::string& table_name);
[[nodiscard]] bool RouteDeleteNextHopOfTableNamed(const std::string& destination, const std::string& netmask,
                                                  const std::string& gateway, const std::string& table_name);

} // namespace routing
