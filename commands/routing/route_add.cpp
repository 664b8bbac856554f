#include "commands/routing/route_add.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/route_listing.h"
#include "commands/routing/route_store.h"
#include "commands/routing/tables.h"
#include "front/probes/cluster.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"

#include <algorithm>
#include <arpa/inet.h>
#include <libintl.h>

namespace routing {
namespace {

constexpr const char* kNotAdded = "Failed to add new static route.";

struct NewRoute {
    std::string destination;
    std::string netmask;
    std::string gateway;
    std::string distance;
    std::string weight;
    std::string table; // as typed
    std::string log;
};

// Only what the administrator typed.
std::string FormatAddLog(const std::string& destination, const std::string& netmask,
                         const std::string& gateway, const std::string& table, const std::string& table_name,
                         const std::string& distance, const std::string& weight) {
    const auto part = [](const char* word, const std::string& text) {
        return text.empty() ? "" : word + text;
    };
    return "Command: inet route add " + destination + part(" netmask ", netmask) + " gateway " + gateway +
           part(" distance ", distance) + part(" weight ", weight) + part(" table name ", table_name) +
           part(" table number ", table);
}

bool Fail(const NewRoute& route, const char* message) {
    const char* text = gettext(message);
    shell_print_error("%s", text);
    slput(kLogInfo, "<RT_ADD> %s. %s", route.log.c_str(), text);
    return false;
}

bool MakeTable(const NewRoute& route, std::string name) {
    if (name.empty())
        name = "TABLE-" + route.table;
    if (!IsTableNameUnique(name))
        return Fail(route, "Failed to add new static route. Table name not unique.");
    if (!AddTable(name, route.table))
        return Fail(route, "Failed to add new static route. Can't add new table.");
    return true;
}

bool EnsureTable(const NewRoute& route, const std::string& name) {
    if (!TableExists(route.table))
        return MakeTable(route, name);
    if (!name.empty() && !TableNameMatches(route.table, name))
        return Fail(route, "Failed to add new static route. Table name doesn't match table number or table "
                           "doesn't exist.");
    return true;
}

bool CheckDistance(const NewRoute& route) {
    std::string dhcp = kInitialDhcpDistance;
    std::string dhcp_default = kInitialDhcpDistance;
    if (!corvanshell::get_dhcp_distance(dhcp, "main") ||
        !corvanshell::get_dhcp_distance(dhcp_default, "default_route"))
        return Fail(route, "Failed to get DHCP distance. DHCP daemon must be running.");
    if (route.distance == dhcp || route.distance == dhcp_default)
        return Fail(route, "Failed to add new static route. Distance coincides with a distance of DHCP.");
    if (route.distance == kOspfDistance)
        return Fail(route, "Failed to add new static route. Distance coincides with a distance of OSPF.");
    return true;
}

void NormaliseDestination(NewRoute& route) {
    in_addr address{}, mask{};
    if (inet_aton(route.destination.c_str(), &address) == 0 || inet_aton(route.netmask.c_str(), &mask) == 0)
        return;
    address.s_addr &= mask.s_addr;
    const std::string masked = inet_ntoa(address);
    if (masked == route.destination)
        return;
    shell_print_info(gettext("Route destination has been automatically adjusted accordingly to netmask."));
    route.destination = masked;
}

// Shows the routes that the new one would replace, and asks. True when there is none.
bool ConfirmReplacement(const RouteStore& store, const NewRoute& route) {
    const std::string& table = route.table.empty() ? kMainTable : route.table;
    const Routes found = store.FindRoutes(route.destination, route.netmask, route.gateway);
    const bool replaces = std::any_of(found.begin(), found.end(), [&](const auto& entry) {
        return entry.second.table == table && (entry.second.EffectiveDistance() != route.distance ||
                                               entry.second.EffectiveWeight() != route.weight);
    });
    if (!replaces)
        return true;
    shell_print_info(gettext("The following static route will be replaced:\n"));
    shell_print_info("%s", JoinLines(FormatRoutes(found, route.table)).c_str());
    if (shell_get_user_confirmation(gettext("Continue?")) != 0)
        return true;
    shell_print_info(gettext("Command aborted."));
    return false;
}

// Tells whether the daemon shows the route that it took.
bool ReportAdded(const RouteStore& store, NewRoute& route) {
    const Lines lines =
        FormatRoutes(store.FindRoutes(route.destination, route.netmask, route.gateway), route.table);
    if (lines.empty()) {
        shell_print_info(gettext("Static route has been added successfully. However, it remains inactive, "
                                 "because there is no interface you can assign it to."));
        shell_print_info(gettext("Contact the technical support."));
        route.log += std::string(" ") + gettext(kNotAdded);
    } else {
        shell_print_info(gettext("The following static route has been added:\n"));
        shell_print_info("%s", JoinLines(lines).c_str());
        route.log += std::string(". ") + gettext("Successfully added new static route.");
    }
    slput(kLogInfo, "<RT_ADD> %s", route.log.c_str());
    return !lines.empty();
}

bool SendRoute(RouteStore& store, NewRoute& route) {
    if (store.AddRoute(route.destination, route.netmask, route.gateway, route.distance, route.weight,
                       route.table))
        return ReportAdded(store, route);
    route.log += std::string(". ") + gettext(kNotAdded);
    shell_print_error("%s", route.log.c_str());
    slput(kLogError, "<RT_ADD> %s", route.log.c_str());
    return false;
}

} // namespace

std::string EffectiveNetmask(const std::string& destination, const std::string& netmask) {
    if (!netmask.empty())
        return netmask;
    return destination == kAnyDestination ? "0.0.0.0" : "255.255.255.255";
}

bool RouteAdd(const std::string& destination, const std::string& netmask, const std::string& gateway,
              const std::string& table, const std::string& table_name, const std::string& distance,
              const std::string& weight) {
    if (IsDisabledOnPassiveNode(gettext(kFeature)) ||
        !arguments::Check({{destination, arguments::IsAddress, "destination"},
                           {netmask, arguments::IsNetmask, "netmask", true},
                           {gateway, arguments::IsAddress, "next hop"},
                           {table, arguments::IsNumber, "table number", true},
                           {table_name, arguments::IsName, "table name", true},
                           {distance, arguments::IsNumber, "distance", true},
                           {weight, arguments::IsNumber, "weight", true}}))
        return false;
    // Settings that can't be read are told before anything is changed.
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    RouteStore store;
    NewRoute route{destination,
                   EffectiveNetmask(destination, netmask),
                   gateway,
                   distance.empty() ? kDefaultDistance : distance,
                   weight.empty() ? kDefaultWeight : weight,
                   table,
                   FormatAddLog(destination, netmask, gateway, table, table_name, distance, weight)};
    if (!EnsureTable(route, table_name) || !CheckDistance(route))
        return false;
    NormaliseDestination(route);
    return ConfirmReplacement(store, route) && SendRoute(store, route);
}

} // namespace routing
