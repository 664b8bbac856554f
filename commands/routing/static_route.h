#pragma once

#include <map>
#include <memory_resource>
#include <string>
#include <string_view>

namespace routing {

// One static route of the routing daemon, as its configuration has it:
//
//     ip route [table <table>] <destination>/<prefix length> <gateway> [<distance> [<weight>]]
//
// Its texts stand in the configuration that the store holds, since texts of its own would make the listing of
// a hundred thousand routes twice as slow. A copy is good for as long as the store lives.
struct StaticRoute {
    std::string_view destination;
    std::string_view gateway;
    std::string_view netmask; // dotted quad, from the prefix length
    std::string_view prefix_length;
    std::string_view distance; // "" is the default
    std::string_view weight;   // "" is the default
    std::string_view table;    // number

    std::string_view EffectiveDistance() const;
    std::string_view EffectiveWeight() const;
};

// By destination; routes of one destination in the order of the configuration.
using Routes = std::pmr::multimap<std::string_view, StaticRoute>;

inline const std::string kMainTable = "254";
inline const std::string kDefaultDistance = "10";
inline const std::string kDefaultWeight = "1";
inline const std::string kOspfDistance = "110";
inline const std::string kInitialDhcpDistance = "70";
inline const std::string kAnyDestination = "0.0.0.0";

// What the administrator is told is disabled on a passive node.
inline constexpr const char* kFeature = "IP routing";

inline std::string_view StaticRoute::EffectiveDistance() const {
    return distance.empty() ? std::string_view(kDefaultDistance) : distance;
}

inline std::string_view StaticRoute::EffectiveWeight() const {
    return weight.empty() ? std::string_view(kDefaultWeight) : weight;
}

} // namespace routing
