#pragma once

#include <string>

namespace routing {

// The mask of a route whose command names none: the default route's, or a host's.
std::string EffectiveNetmask(const std::string& destination, const std::string& netmask);

// inet route add: adds a static route, or replaces one after a question. "" is an argument left out; a table
// that doesn't exist is made. Addresses and masks are dotted quads, the others decimal numbers.
[[nodiscard]] bool RouteAdd(const std::string& destination, const std::string& netmask,
                            const std::string& gateway, const std::string& table,
                            const std::string& table_name, const std::string& distance,
                            const std::string& weight);

} // namespace routing
