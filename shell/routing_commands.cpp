#include "commands/routing/dhcp_distance.h"
#include "commands/routing/route_add.h"
#include "commands/routing/route_clear.h"
#include "commands/routing/route_delete.h"
#include "commands/routing/route_forms.h"
#include "commands/routing/route_show.h"
#include "shell/families.h"

namespace shell {
namespace {

using namespace routing;
using Text = const std::string&;

constexpr const char* kDefaultRoute = "0.0.0.0";

bool Add(Text destination, Text netmask, Text gateway, Text distance, Text weight, Text table_name,
         std::string table) {
    return ResolveTable(table_name, table) &&
           RouteAdd(destination, netmask, gateway, table, table_name, distance, weight);
}

bool AddDefault(Text gateway, Text distance, Text weight, Text table_name, Text table) {
    return Add(kDefaultRoute, "", gateway, distance, weight, table_name, table);
}

bool DeleteTo(Text destination, std::string table, Text table_name) {
    const bool is_named = !table.empty() || !table_name.empty();
    return ResolveTable(table_name, table) && (is_named ? RouteDeleteOfTable(destination, table, table_name)
                                                        : RouteDeleteTo(destination, table));
}

bool DeleteMasked(Text destination, Text netmask, std::string table, Text table_name) {
    return ResolveTable(table_name, table) && RouteDeleteMasked(destination, netmask, table, table_name);
}

bool DeleteNextHop(Text destination, Text netmask, Text gateway, std::string table, Text table_name) {
    return ResolveTable(table_name, table) &&
           RouteDeleteNextHop(destination, netmask, gateway, table, table_name);
}

constexpr Command kCommands[] = {
    {"inet route", "static routes"},
    {"inet route add", "adds a static route, or replaces one after a question"},
    {"inet route add <destination> [netmask <netmask>] gateway <next-hop> [distance <distance>] [weight "
     "<weight>] "
     "[table name <table-name>] [table number <table-number>]",
     "adds a route, or replaces one after a question; without a netmask the route is a host's; a table "
     "that is not there yet is made by its number, alone or with its name",
     kCall<&Add>},
    {"inet route add default gateway", "the next hop"},
    {"inet route add default gateway <next-hop> [distance <distance>] [weight <weight>] "
     "[table name <table-name>] [table number <table-number>]",
     "adds the default route", kCall<&AddDefault>},
    {"inet route delete", "deletes static routes"},
    {"inet route delete <routed> [table <table-number>|table name <table-name>]",
     "deletes the routes to it, several after a question", kCall<&DeleteTo>},
    {"inet route delete <routed> netmask <netmask> [table <table-number>] [table name <table-name>]",
     "deletes the routes to it, of that netmask", kCall<&DeleteMasked>},
    {"inet route delete <routed> netmask <netmask> next-hop <routed-hop> [table <table-number>] "
     "[table name <table-name>]",
     "deletes one route", kCall<&DeleteNextHop>},
    {"inet route delete default table", "the routing table, the main one when it is left out"},
    {"inet route delete default table name", "by its name"},
    {"inet route delete default next-hop", "the next hop"},
    {"inet route delete default [table <table-number>] [table name <table-name>]",
     "deletes the default routes",
     [](Text table, Text table_name) { return DeleteMasked(kDefaultRoute, "", table, table_name); }},
    {"inet route delete default next-hop <routed-hop> [table <table-number>] [table name <table-name>]",
     "deletes one default route",
     [](Text gateway, Text table, Text table_name) {
         return DeleteNextHop(kDefaultRoute, "", gateway, table, table_name);
     }},
    {"inet route clear", "deletes all routes, or those of one table, after a question"},
    {"inet route clear", "deletes all routes, after a question", kCall<&RouteClearAll>},
    {"inet route clear table", "a table of routes"},
    {"inet route clear table <table-number>", "deletes the routes of a table, after a question",
     kCall<&RouteClearTable>},
    {"inet route clear table name", "by its name"},
    {"inet route clear table name <table-name>", "deletes the routes of a table, after a question",
     kCall<&RouteClearTableByName>},
    {"inet show routing", "shows what the routing daemon knows of all routes, page by page",
     kCall<&ShowRouting>, kShows},
    {"inet show routing static", "shows the static routes of every table", kCall<&ShowStaticRoutes>, kShows},
    {"inet show routing static table", "static routes of one table"},
    {"inet show routing static table <table-number>", "shows the static routes of a table",
     kCall<&ShowRouteTable>, kShows},
    {"inet show routing static table name", "by its name"},
    {"inet show routing static table name <table-name>", "shows the static routes of a table",
     kCall<&ShowRouteTableByName>, kShows},
    {"inet show routing dhcp", "shows the routes learned by DHCP", kCall<&ShowDhcpRoutes>, kShows},
    {"inet dhcp client", "the distances of routes learned by DHCP"},
    {"inet dhcp client route-distance <distance> [default-route <distance>]",
     "sets the distances of routes learned by DHCP; no static route may have them",
     kCall<&SetDhcpRouteDistance>},
    {"inet show dhcp", "what DHCP brings"},
    {"inet show dhcp client", "shows the distances of these routes, and what each interface takes from DHCP",
     kCall<&ShowDhcpClient>, kShows},
};

} // namespace

std::span<const Command> RoutingCommands() {
    return kCommands;
}

} // namespace shell
