#pragma once

#include <functional>
#include <map>
#include <string>

namespace routing {

inline const std::string kMainTable = "254";
inline const std::string kDefaultDistance = "10";
inline const std::string kDefaultWeight = "1";
inline const std::string kOspfDistance = "110";
inline const std::string kInitialDhcpDistance = "70";
inline const std::string kAnyDestination = "0.0.0.0";

// What the administrator is told is disabled on a passive node.
inline constexpr const char* kFeature = "IP routing";

// One static route of the routing daemon, as its configuration has it:
//
//     ip route [table <table>] <destination>/<prefix length> <gateway> [<distance> [<weight>]]
struct StaticRoute {
    std::string destination{};
    std::string gateway{};
    std::string netmask{}; // dotted quad, from the prefix length
    std::string prefix_length{};
    std::string distance{}; // "" is the default
    std::string weight{};   // "" is the default
    std::string table{};    // number

    const std::string& EffectiveDistance() const { return distance.empty() ? kDefaultDistance : distance; }
    const std::string& EffectiveWeight() const { return weight.empty() ? kDefaultWeight : weight; }
};

// By destination; routes of one destination in the order of the configuration.
using Routes = std::multimap<std::string, StaticRoute, std::less<>>;

} // namespace routing
