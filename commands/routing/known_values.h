#pragma once

#include <set>
#include <string>

// What Tab offers where something is to be taken away. Nothing is locked, since a command may hold the lock
// of the routes while its administrator ponders a question, and nothing is told: what can't be read offers
// nothing.

namespace routing {

std::set<std::string> RouteDestinations();
std::set<std::string> RouteNextHops();
// Of one policy's rules, or of all for "".
std::set<std::string> PolicyPriorities(const std::string& policy);

} // namespace routing
