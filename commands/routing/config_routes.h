#pragma once

#include "commands/routing/static_route.h"

#include <string_view>

namespace routing {

// The static routes in the daemon's running configuration; lines that are none are skipped.
Routes ParseRoutes(std::string_view configuration);

} // namespace routing
