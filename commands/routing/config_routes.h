#pragma once

#include "commands/routing/daemon.h"
#include "commands/routing/static_route.h"

namespace routing {

// The static routes in the daemon's running configuration; lines that are none are skipped.
Routes ParseRoutes(const Lines& configuration);

} // namespace routing
