#pragma once

#include "reference/routing/links.h"

#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace reference::routing {

constexpr std::uint32_t kMainTable = 254;

// Routes to one place in one table with one distance: traffic is divided among their next hops.
struct RouteGroup {
    std::uint32_t table;
    Prefix prefix;
    std::uint32_t distance;

    friend auto operator<=>(const RouteGroup&, const RouteGroup&) = default;
};
struct GroupHop {
    const Link* link;
    std::uint32_t gateway;
    std::uint32_t weight;
};
using RouteGroups = std::map<RouteGroup, std::vector<GroupHop>>;

// What a configuration asks of the kernel. The lines are in ip(8)'s own words, as it shows what is there, so
// that the difference of two sets is what has to change.
struct Forwarding {
    std::set<std::string> routes;
    std::set<std::string> rules;
    std::set<std::uint32_t> classes; // values of the TOS byte that rules ask for
};

// The lines of the groups, and of the connected networks in every table but the main one: without them a
// reply that a rule sends to the table would leave again by its default route.
std::set<std::string> RouteLines(const RouteGroups& groups, const std::vector<Link>& links);
std::string RouteLine(const RouteGroup& group, const std::vector<GroupHop>& hops);
// Rules can't ask for a DSCP value, so packets are marked by it.
std::string MarkOf(std::uint32_t tos);

// Those of our routes that the kernel has.
std::set<std::string> KernelRoutes();
// Adds what is missing and removes what is too much; routes in this order, so that no packet falls between.
// False when the kernel refused a part; the reason is on standard error.
[[nodiscard]] bool BringIntoKernel(const Forwarding& forwarding);

} // namespace reference::routing
