#include "commands/routing/route_delete.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/route_add.h"
#include "commands/routing/route_listing.h"
#include "commands/routing/route_store.h"
#include "commands/routing/tables.h"
#include "front/probes/cluster.h"
#include "platform/console.h"
#include "platform/log.h"

#include <functional>
#include <libintl.h>

namespace routing {
namespace {

// The routes that a command has found, and how it takes them away.
struct Removal {
    const Routes& found;
    const std::string& table;
    std::function<bool()> remove;
};

bool Fail(const char* message) {
    shell_print_error("%s", gettext(message));
    return false;
}

bool CheckTableExists(const std::string& table) {
    return table == kMainTable || TableExists(table) ||
           Fail("Failed to delete static route. Table doesn't exist.");
}

bool CheckTableName(const std::string& table, const std::string& name) {
    return name.empty() || TableNameMatches(table, name) ||
           Fail("Failed to delete static route. Table name doesn't match table number.");
}

bool CheckTableRoutes(const std::string& table) {
    return table == kMainTable || TableHasRoutes(table) ||
           Fail("Failed to delete static route. Routes doesn't exist in this table.");
}

bool CheckArguments(const std::string& destination, const std::string& netmask, const std::string& table,
                    const std::string& table_name) {
    return arguments::Check({{destination, arguments::IsAddress, "destination"},
                             {netmask, arguments::IsNetmask, "netmask", true},
                             {table, arguments::IsNumber, "table number", true},
                             {table_name, arguments::IsName, "table name", true}});
}

bool Remove(const Removal& removal) {
    if (!removal.remove())
        return Fail("failed to read routes list");
    const std::string& table = removal.table;
    // The routes are gone either way.
    if (table != kMainTable && !TableHasRoutes(table) && !DeleteTable(table))
        shell_print_error(gettext("Failed to delete table"));
    return true;
}

bool RemoveOne(const Removal& removal) {
    const Lines lines = FormatRoutes(removal.found, removal.table);
    if (removal.table != kMainTable && !CanDeleteRouteOfTable(removal.table)) {
        shell_print_error(gettext("Unable to delete this route, because it is the only route in the table "
                                  "referenced by at least one policy rule"));
        return Fail("Failed to delete route");
    }
    if (!Remove(removal))
        return false;
    std::string log = gettext("The following route was deleted: ");
    for (const std::string& line : lines)
        log += line + ", ";
    shell_print_info("%s", JoinLines(lines).c_str());
    shell_log_info("%s", log.c_str());
    return true;
}

bool ConfirmAndRemove(const Removal& removal, const char* question, const char* success) {
    if (shell_get_user_confirmation("%s", gettext(question)) == 0) {
        shell_log_info("%s", gettext("Command aborted"));
        return false;
    }
    if (!Remove(removal))
        return false;
    shell_print_info("%s", gettext(success));
    return true;
}

bool RemoveFound(const Removal& removal, const char* success) {
    if (removal.found.size() == 1)
        return RemoveOne(removal);
    shell_print_info(gettext("You are going to delete the following static routes:"));
    shell_print_info("\n%s", JoinLines(FormatRoutes(removal.found, removal.table)).c_str());
    return ConfirmAndRemove(removal, "Continue?", success);
}

// Several routes that differ in nothing but distance and weight: a state that the daemon should not hold.
bool RemoveTwins(const Removal& removal) {
    shell_print_info(
        gettext("There are several static routes with the same destination, netmask and next hop:"));
    shell_print_info("%s", JoinLines(FormatRoutes(removal.found, removal.table)).c_str());
    shell_print_info(gettext("Some settings, configured long ago, are incorrect."));
    shell_print_info(gettext("Contact the technical support."));
    return ConfirmAndRemove(removal, "Do you want to delete all these routes?",
                            "Routes have been successfully deleted");
}

} // namespace

std::string FormatRouteDeleteLog(const std::string& destination, const std::string& netmask,
                                 const std::string& gateway, const std::string& table,
                                 const std::string& table_name) {
    const auto part = [](const char* word, const std::string& text) {
        return text.empty() ? "" : word + text;
    };
    const std::string target =
        destination == kAnyDestination ? " default" : " " + destination + part(" netmask ", netmask);
    return "Command: inet route delete" + target + part(" next-hop ", gateway) + part(" table ", table) +
           part(" name ", table_name);
}

bool RouteDeleteTo(const std::string& destination, const std::string& table) {
    if (IsDisabledOnPassiveNode(gettext(kFeature)) || !CheckArguments(destination, "", table, ""))
        return false;
    shell_log_info("Command: inet route delete %s", destination.c_str());
    RouteStore store;
    Routes found = store.FindRoutes(destination);
    if (!found.empty() && (!CheckTableRoutes(table) || !CheckTableExists(table)))
        return false;
    // The routes of other tables are found too, and stay.
    std::erase_if(found, [&](const auto& entry) { return entry.second.table != table; });
    if (found.empty()) {
        shell_print_error(gettext("There is no static route to %s"), destination.c_str());
        return false;
    }
    const auto remove = [&] {
        if (table == kMainTable)
            return store.DeleteRoutes(destination);
        bool removed = true;
        for (const auto& [key, route] : found)
            removed = store.DeleteRoutes(destination, route.netmask, route.gateway, table) && removed;
        return removed;
    };
    return RemoveFound({found, table, remove}, "Static route has been deleted successfully");
}

bool RouteDeleteMasked(const std::string& destination, const std::string& netmask, const std::string& table,
                       const std::string& table_name) {
    if (IsDisabledOnPassiveNode(gettext(kFeature)) ||
        !CheckArguments(destination, netmask, table, table_name))
        return false;
    shell_log_info("%s", FormatRouteDeleteLog(destination, netmask, "", table, table_name).c_str());
    // Logged whatever was typed. Kept: log searches know the line.
    shell_log_info("Command: inet route delete default next-hop. ");
    RouteStore store;
    const std::string mask = EffectiveNetmask(destination, netmask);
    const Routes found = store.FindRoutes(destination, mask, "", table);
    if (found.empty()) {
        shell_print_error(gettext("There is no static route to %s with netmask %s"), destination.c_str(),
                          mask.c_str());
        return false;
    }
    if (!CheckTableExists(table) || (table != kMainTable && !CheckTableName(table, table_name)) ||
        !CheckTableRoutes(table))
        return false;
    const auto remove = [&] {
        return table == kMainTable ? store.DeleteRoutes(destination, mask)
                                   : store.DeleteRoutes(destination, mask, "", table);
    };
    return RemoveFound({found, table, remove}, "Routes have been successfully deleted");
}

bool RouteDeleteNextHop(const std::string& destination, const std::string& netmask,
                        const std::string& gateway, const std::string& table, const std::string& table_name) {
    if (IsDisabledOnPassiveNode(gettext(kFeature)) ||
        !CheckArguments(destination, netmask, table, table_name) ||
        !arguments::Check({{gateway, arguments::IsAddress, "next hop"}}))
        return false;
    RouteStore store;
    if (!CheckTableExists(table) || !CheckTableName(table, table_name) || !CheckTableRoutes(table))
        return false;
    const std::string mask = EffectiveNetmask(destination, netmask);
    const Routes found = store.FindRoutes(destination, mask, gateway, table);
    if (found.empty()) {
        shell_print_error(gettext("There is no static route to %s with netmask %s and next hop %s"),
                          destination.c_str(), mask.c_str(), gateway.c_str());
        return false;
    }
    const auto remove = [&] {
        return table == kMainTable ? store.DeleteRoutes(destination, mask, gateway)
                                   : store.DeleteRoutes(destination, mask, gateway, table);
    };
    const Removal removal{found, table, remove};
    return found.size() == 1 ? RemoveOne(removal) : RemoveTwins(removal);
}

} // namespace routing
