#pragma once

#include <map>
#include <memory_resource>
#include <string>
#include <string_view>

namespace routing {

inline const std::string kMainTable = "254";
inline constexpr std::string_view kDefaultDistance = "10";
inline constexpr std::string_view kDefaultWeight = "1";
inline const std::string kOspfDistance = "110";
inline const std::string kInitialDhcpDistance = "70";
inline const std::string kAnyDestination = "0.0.0.0";

// What the administrator is told is disabled on a passive node.
inline constexpr const char* kFeature = "IP routing";

// One static route of the routing daemon, as its configuration has it:
//
//     ip route [table <table>] <destination>/<prefix length> <gateway> [<distance> [<weight>]]
//
// Its texts stand in the configuration that the store holds, since texts of its own would make the listing of
// a hundred thousand routes a third slower. A copy is good for as long as the store lives.
struct StaticRoute {
    std::string_view destination;
    std::string_view gateway;
    std::string_view netmask; // dotted quad, from the prefix length
    std::string_view prefix_length;
    std::string_view distance; // "" is the default
    std::string_view weight;   // "" is the default
    std::string_view table;    // number

    std::string_view EffectiveDistance() const { return distance.empty() ? kDefaultDistance : distance; }
    std::string_view EffectiveWeight() const { return weight.empty() ? kDefaultWeight : weight; }
};

// By destination; routes of one destination in the order of the configuration.
using Routes = std::pmr::multimap<std::string_view, StaticRoute>;

// A route that is to be added. "" is left out.
struct NewRoute {
    std::string destination;
    std::string netmask;
    std::string gateway;
    std::string distance;
    std::string weight;
    std::string table;
};

} // namespace routing
