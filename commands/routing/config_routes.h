#pragma once

#include "commands/routing/static_route.h"

#include <string_view>

namespace routing {

// Adds the static routes in the daemon's running configuration, whose texts stay in it; lines that are none
// are skipped.
void ParseRoutes(std::string_view configuration, Routes& routes);

} // namespace routing
