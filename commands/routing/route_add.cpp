#include "commands/routing/route_add.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/command_log.h"
#include "commands/routing/route_listing.h"
#include "commands/routing/route_store.h"
#include "commands/routing/tables.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"

#include <algorithm>
#include <arpa/inet.h>

namespace routing {
namespace {

constexpr const char* kTag = "RT_ADD";
constexpr const char* kNotAdded = "Failed to add new static route.";

struct Addition {
    NewRoute route; // with the defaults in the place of what was left out
    std::string table_name;
    std::string log; // only what the administrator typed
};

std::string FormatAddLog(const NewRoute& typed, const std::string& table_name) {
    return "Command: inet route add " + typed.destination + OptionalPart(" netmask ", typed.netmask) +
           " gateway " + typed.gateway + OptionalPart(" distance ", typed.distance) +
           OptionalPart(" weight ", typed.weight) + OptionalPart(" table name ", table_name) +
           OptionalPart(" table number ", typed.table);
}

Addition MakeAddition(const NewRoute& typed, const std::string& table_name) {
    Addition added{typed, table_name, FormatAddLog(typed, table_name)};
    added.route.netmask = EffectiveNetmask(typed.destination, typed.netmask);
    if (typed.distance.empty())
        added.route.distance = kDefaultDistance;
    if (typed.weight.empty())
        added.route.weight = kDefaultWeight;
    return added;
}

bool RefuseRoute(const Addition& added, const Format<>& message) {
    return RefuseCommand(kTag, added.log, message);
}

bool MakeTable(const Addition& added) {
    const std::string& number = added.route.table;
    const std::string name = added.table_name.empty() ? "TABLE-" + number : added.table_name;
    if (!IsTableNameUnique(name))
        return RefuseRoute(added, Tr("Failed to add new static route. Table name not unique."));
    return AddTable(name, number) ||
           RefuseRoute(added, Tr("Failed to add new static route. Can't add new table."));
}

bool EnsureTable(const Addition& added) {
    const std::string& number = added.route.table;
    if (!TableExists(number))
        return MakeTable(added);
    return added.table_name.empty() || TableNameMatches(number, added.table_name) ||
           RefuseRoute(added, Tr("Failed to add new static route. Table name doesn't match table number or "
                                 "table doesn't exist."));
}

bool CheckDistance(const Addition& added) {
    std::string dhcp = kInitialDhcpDistance;
    std::string dhcp_default = kInitialDhcpDistance;
    if (!corvanshell::get_dhcp_distance(dhcp, "main") ||
        !corvanshell::get_dhcp_distance(dhcp_default, "default_route"))
        return RefuseRoute(added, Tr("Failed to get DHCP distance. DHCP daemon must be running."));
    const std::string& distance = added.route.distance;
    if (distance == dhcp || distance == dhcp_default)
        return RefuseRoute(added,
                           Tr("Failed to add new static route. Distance coincides with a distance of DHCP."));
    return distance != kOspfDistance ||
           RefuseRoute(added,
                       Tr("Failed to add new static route. Distance coincides with a distance of OSPF."));
}

void NormaliseDestination(NewRoute& route) {
    in_addr address{}, mask{};
    if (inet_aton(route.destination.c_str(), &address) == 0 || inet_aton(route.netmask.c_str(), &mask) == 0)
        return;
    address.s_addr &= mask.s_addr;
    const std::string masked = inet_ntoa(address);
    if (masked == route.destination)
        return;
    PrintInfo(Tr("Route destination has been automatically adjusted accordingly to netmask."));
    route.destination = masked;
}

bool IsReplaced(const StaticRoute& old, const NewRoute& route) {
    return old.table == (route.table.empty() ? kMainTable : route.table) &&
           (old.EffectiveDistance() != route.distance || old.EffectiveWeight() != route.weight);
}

Routes FindSame(const RouteStore& store, const NewRoute& route) {
    return store.FindRoutes(route.destination, route.netmask, route.gateway);
}

// Shows the routes that the new one would replace, and asks. True when there is none.
bool ConfirmReplacement(const RouteStore& store, const NewRoute& route) {
    const Routes found = FindSame(store, route);
    if (std::none_of(found.begin(), found.end(),
                     [&](const auto& entry) { return IsReplaced(entry.second, route); }))
        return true;
    PrintInfo(Tr("The following static route will be replaced:\n"));
    PrintInfo("%s", JoinLines(FormatRoutes(found, route.table)));
    if (shell_get_user_confirmation(gettext("Continue?")) != 0)
        return true;
    PrintInfo(Tr("Command aborted."));
    return false;
}

// Tells whether the daemon shows the route that it took.
bool ReportAdded(const RouteStore& store, const Addition& added) {
    const Lines lines = FormatRoutes(FindSame(store, added.route), added.route.table);
    if (lines.empty()) {
        PrintInfo(Tr("Static route has been added successfully. However, it remains inactive, because there "
                     "is no interface you can assign it to."));
        PrintInfo(Tr("Contact the technical support."));
        LogCommand(kLogInfo, kTag, added.log + " " + gettext(kNotAdded));
        return false;
    }
    PrintInfo(Tr("The following static route has been added:\n"));
    PrintInfo("%s", JoinLines(lines));
    LogCommand(kLogInfo, kTag, added.log + ". " + gettext("Successfully added new static route."));
    return true;
}

bool SendRoute(RouteStore& store, const Addition& added) {
    if (store.AddRoute(added.route))
        return ReportAdded(store, added);
    const std::string log = added.log + ". " + gettext(kNotAdded);
    LogCommand(kLogError, kTag, log);
    return Refuse("%s", log);
}

bool CheckArguments(const NewRoute& typed, const std::string& table_name) {
    return arguments::Check({{typed.destination, arguments::IsAddress, "destination"},
                             {typed.netmask, arguments::IsNetmask, "netmask", true},
                             {typed.gateway, arguments::IsAddress, "next hop"},
                             {typed.table, arguments::IsNumber, "table number", true},
                             {table_name, arguments::IsName, "table name", true},
                             {typed.distance, arguments::IsNumber, "distance", true},
                             {typed.weight, arguments::IsNumber, "weight", true}});
}

bool Add(const NewRoute& typed, const std::string& table_name) {
    if (IsDisabledOnPassiveNode(gettext(kFeature)) || !CheckArguments(typed, table_name))
        return false;
    // Settings that can't be read are told before anything is changed.
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    RouteStore store;
    Addition added = MakeAddition(typed, table_name);
    if (!EnsureTable(added) || !CheckDistance(added))
        return false;
    NormaliseDestination(added.route);
    return ConfirmReplacement(store, added.route) && SendRoute(store, added);
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
    return Add({destination, netmask, gateway, distance, weight, table}, table_name);
}

} // namespace routing
