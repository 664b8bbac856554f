#include "commands/routing/route_clear.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/route_forms.h"
#include "commands/routing/route_store.h"
#include "commands/routing/tables.h"
#include "front/probes/cluster.h"
#include "platform/console.h"
#include "platform/log.h"

#include <libintl.h>

namespace routing {
namespace {

bool MismatchedName() {
    shell_print_error(gettext("failed to clear table: table name doesn't match table number"));
    return false;
}

// The table goes with its first route, so that its other routes are those of a table without a name.
bool ClearRoute(RouteStore& store, const StaticRoute& route) {
    const std::string table(route.table);
    const bool is_main = table == kMainTable;
    if (!is_main && !IsTableUnreferenced(GetTableName(table))) {
        shell_print_error(gettext("unable to clear table %s because it is referenced by at least one policy "
                                  "rule"),
                          table.c_str());
        shell_print_error(gettext("failed to clear table"));
        return false;
    }
    if (!store.DeleteTableRoute(route.destination, route, table)) {
        shell_print_error(gettext("failed to delete route for %s"), std::string(route.destination).c_str());
        return false;
    }
    if (!is_main && !DeleteTable(table)) {
        shell_print_error(gettext("failed to delete table"));
        return false;
    }
    return true;
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
        shell_print_info(gettext("There are no static routes"));
        return true;
    }
    if (shell_get_user_confirmation(gettext("Delete all the static routes?")) == 0) {
        shell_print_info(gettext("Removal of the static routes has been canceled"));
        return false;
    }
    for (const auto& [destination, route] : routes) {
        if ((number.empty() || route.table == number) && !ClearRoute(store, route))
            return false;
    }
    shell_print_info(gettext("The static routes have been removed"));
    return true;
}

bool RouteClearAll() {
    shell_log_info("command: inet route clear");
    return RouteClear("", "");
}

bool RouteClearTable(const std::string& number) {
    shell_log_info("command: inet route clear table %s", number.c_str());
    return RouteClear(number, "");
}

bool RouteClearTableByName(const std::string& name) {
    shell_log_info("command: inet route clear table name %s", name.c_str());
    std::string number;
    if (!FindTableNumber(name, number))
        return false;
    // Without a number every table would be cleared.
    return number.empty() ? MismatchedName() : RouteClear(number, name);
}

} // namespace routing
