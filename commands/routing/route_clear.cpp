#include "commands/routing/route_clear.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/route_forms.h"
#include "commands/routing/route_store.h"
#include "commands/routing/tables.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"

namespace routing {
namespace {

bool MismatchedName() {
    return Refuse(Tr("failed to clear table: table name doesn't match table number"));
}

// The table goes with its first route, so that its other routes are those of a table without a name.
bool ClearRoute(RouteStore& store, const StaticRoute& route) {
    const std::string table(route.table);
    const std::string destination(route.destination);
    const bool is_main = table == kMainTable;
    if (!is_main && !IsTableUnreferenced(GetTableName(table))) {
        PrintError(Tr("unable to clear table %s because it is referenced by at least one policy rule"),
                   table);
        return Refuse(Tr("failed to clear table"));
    }
    if (!store.DeleteTableRoute(destination, route, table))
        return Refuse(Tr("failed to delete route for %s"), destination);
    return is_main || DeleteTable(table) || Refuse(Tr("failed to delete table"));
}

} // namespace

bool RouteClear(const std::string& number, const std::string& name) {
    if (IsDisabledOnPassiveNode(gettext(kFeature)) ||
        !arguments::Check({{number, arguments::IsNumber, "table number", true},
                           {name, arguments::IsName, "table name", true}}))
        return false;
    RouteStore store;
    if (!number.empty() && !name.empty() && !TableNameMatches(number, name))
        return MismatchedName();
    const Routes routes = store.All();
    if (routes.empty()) {
        PrintInfo(Tr("There are no static routes"));
        return true;
    }
    if (shell_get_user_confirmation(gettext("Delete all the static routes?")) == 0) {
        PrintInfo(Tr("Removal of the static routes has been canceled"));
        return false;
    }
    for (const auto& [destination, route] : routes) {
        if ((number.empty() || route.table == number) && !ClearRoute(store, route))
            return false;
    }
    PrintInfo(Tr("The static routes have been removed"));
    return true;
}

bool RouteClearAll() {
    LogInfo("command: inet route clear");
    return RouteClear("", "");
}

bool RouteClearTable(const std::string& number) {
    LogInfo("command: inet route clear table %s", number);
    return RouteClear(number, "");
}

bool RouteClearTableByName(const std::string& name) {
    LogInfo("command: inet route clear table name %s", name);
    std::string number;
    if (!FindTableNumber(name, number))
        return false;
    // Without a number every table would be cleared.
    return number.empty() ? MismatchedName() : RouteClear(number, name);
}

} // namespace routing
