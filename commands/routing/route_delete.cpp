#include "commands/routing/route_delete.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/command_log.h"
#include "commands/routing/route_add.h"
#include "commands/routing/route_listing.h"
#include "commands/routing/route_store.h"
#include "commands/routing/tables.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"

#include <functional>
#include <set>

namespace routing {
namespace {

// What is typed. "" is left out.
struct RouteWords {
    std::string destination;
    std::string netmask;
    std::string gateway;
    std::string table;
    std::string table_name;
};

// The routes that a command has found, and how it takes them away.
struct Removal {
    const Routes& found;
    std::function<bool()> remove;
};

bool CheckTableExists(const std::string& table) {
    return table == kMainTable || TableExists(table) ||
           Refuse(Tr("Failed to delete static route. Table doesn't exist."));
}

bool CheckTableName(const RouteWords& typed) {
    return typed.table_name.empty() || TableNameMatches(typed.table, typed.table_name) ||
           Refuse(Tr("Failed to delete static route. Table name doesn't match table number."));
}

bool CheckTableRoutes(const std::string& table) {
    return table == kMainTable || TableHasRoutes(table) ||
           Refuse(Tr("Failed to delete static route. Routes doesn't exist in this table."));
}

// Whether the command may be carried out here and with these arguments.
bool Begin(const RouteWords& typed) {
    return !IsDisabledOnPassiveNode(gettext(kFeature)) &&
           arguments::Check({{typed.destination, arguments::IsAddress, "destination"},
                             {typed.netmask, arguments::IsNetmask, "netmask", true},
                             {typed.table, arguments::IsNumber, "table number", true},
                             {typed.table_name, arguments::IsName, "table name", true}});
}

// The typed command.
std::string FormatLog(const RouteWords& typed) {
    const std::string target = typed.destination == kAnyDestination
                                   ? " default"
                                   : " " + typed.destination + OptionalPart(" netmask ", typed.netmask);
    return "Command: inet route delete" + target + OptionalPart(" next-hop ", typed.gateway) +
           OptionalPart(" table ", typed.table) + OptionalPart(" name ", typed.table_name);
}

// The tables that the routes lie in.
std::set<std::string> TablesOf(const Routes& routes) {
    std::set<std::string> tables;
    for (const auto& [destination, route] : routes)
        tables.emplace(route.table);
    return tables;
}

Lines FormatFound(const Routes& found) {
    Lines lines;
    for (const std::string& table : TablesOf(found)) {
        const Lines of_table = FormatRoutes(found, table);
        lines.insert(lines.end(), of_table.begin(), of_table.end());
    }
    return lines;
}

bool Remove(const Removal& removal) {
    if (!removal.remove())
        return Refuse(Tr("failed to read routes list"));
    // The routes are gone either way.
    for (const std::string& table : TablesOf(removal.found)) {
        if (table != kMainTable && !TableHasRoutes(table) && !DeleteTable(table))
            PrintError(Tr("Failed to delete table"));
    }
    return true;
}

bool RemoveOne(const Removal& removal) {
    const Lines lines = FormatFound(removal.found);
    const std::string table(removal.found.begin()->second.table);
    if (table != kMainTable && !CanDeleteRouteOfTable(table)) {
        PrintError(Tr("Unable to delete this route, because it is the only route in the table referenced by "
                      "at least one policy rule"));
        return Refuse(Tr("Failed to delete route"));
    }
    if (!Remove(removal))
        return false;
    std::string log = gettext("The following route was deleted: ");
    for (const std::string& line : lines)
        log += line + ", ";
    PrintInfo("%s", JoinLines(lines));
    LogInfo("%s", log);
    return true;
}

bool ConfirmAndRemove(const Removal& removal, const char* question, const Format<>& success) {
    if (shell_get_user_confirmation("%s", gettext(question)) == 0) {
        LogInfo(Tr("Command aborted"));
        return false;
    }
    if (!Remove(removal))
        return false;
    PrintInfo(success);
    return true;
}

bool RemoveFound(const Removal& removal, const Format<>& success) {
    if (removal.found.size() == 1)
        return RemoveOne(removal);
    PrintInfo(Tr("You are going to delete the following static routes:"));
    PrintInfo("\n%s", JoinLines(FormatFound(removal.found)));
    return ConfirmAndRemove(removal, "Continue?", success);
}

// Several routes that differ in nothing but distance and weight: a state that the daemon should not hold.
bool RemoveTwins(const Removal& removal) {
    PrintInfo(Tr("There are several static routes with the same destination, netmask and next hop:"));
    PrintInfo("%s", JoinLines(FormatFound(removal.found)));
    PrintInfo(Tr("Some settings, configured long ago, are incorrect."));
    PrintInfo(Tr("Contact the technical support."));
    return ConfirmAndRemove(removal, "Do you want to delete all these routes?",
                            Tr("Routes have been successfully deleted"));
}

bool DeleteTo(const RouteWords& typed, bool of_that_table_alone) {
    if (!Begin(typed))
        return false;
    LogInfo("Command: inet route delete %s", typed.destination);
    RouteStore store;
    Routes found = store.FindRoutes(typed.destination);
    if (!found.empty() && (!CheckTableRoutes(typed.table) || !CheckTableExists(typed.table)))
        return false;
    if (of_that_table_alone && !found.empty() && !CheckTableName(typed))
        return false;
    if (of_that_table_alone)
        std::erase_if(found, [&](const auto& entry) { return entry.second.table != typed.table; });
    if (found.empty())
        return Refuse(Tr("There is no static route to %s"), typed.destination);
    return RemoveFound({found, [&] { return store.DeleteFound(found); }},
                       Tr("Static route has been deleted successfully"));
}

bool DeleteMasked(const RouteWords& typed) {
    if (!Begin(typed))
        return false;
    LogInfo("%s", FormatLog(typed));
    // Logged whatever was typed. Kept: log searches know the line.
    LogInfo("Command: inet route delete default next-hop. ");
    RouteStore store;
    const std::string mask = EffectiveNetmask(typed.destination, typed.netmask);
    const Routes found = store.FindRoutes(typed.destination, mask, "", typed.table);
    if (found.empty())
        return Refuse(Tr("There is no static route to %s with netmask %s"), typed.destination, mask);
    if (!CheckTableExists(typed.table) || (typed.table != kMainTable && !CheckTableName(typed)) ||
        !CheckTableRoutes(typed.table))
        return false;
    const auto remove = [&] {
        return typed.table == kMainTable ? store.DeleteRoutes(typed.destination, mask)
                                         : store.DeleteRoutes(typed.destination, mask, "", typed.table);
    };
    return RemoveFound({found, remove}, Tr("Routes have been successfully deleted"));
}

bool DeleteNextHop(const RouteWords& typed) {
    if (!Begin(typed) || !arguments::Check({{typed.gateway, arguments::IsAddress, "next hop"}}))
        return false;
    RouteStore store;
    if (!CheckTableExists(typed.table) || !CheckTableName(typed) || !CheckTableRoutes(typed.table))
        return false;
    const std::string mask = EffectiveNetmask(typed.destination, typed.netmask);
    const Routes found = store.FindRoutes(typed.destination, mask, typed.gateway, typed.table);
    if (found.empty())
        return Refuse(Tr("There is no static route to %s with netmask %s and next hop %s"), typed.destination,
                      mask, typed.gateway);
    const auto remove = [&] {
        return typed.table == kMainTable
                   ? store.DeleteRoutes(typed.destination, mask, typed.gateway)
                   : store.DeleteRoutes(typed.destination, mask, typed.gateway, typed.table);
    };
    const Removal removal{found, remove};
    return found.size() == 1 ? RemoveOne(removal) : RemoveTwins(removal);
}

} // namespace

std::string FormatRouteDeleteLog(const std::string& destination, const std::string& netmask,
                                 const std::string& gateway, const std::string& table,
                                 const std::string& table_name) {
    return FormatLog({destination, netmask, gateway, table, table_name});
}

bool RouteDeleteTo(const std::string& destination, const std::string& table) {
    return DeleteTo({destination, "", "", table, ""}, false);
}

bool RouteDeleteOfTable(const std::string& destination, const std::string& table,
                        const std::string& table_name) {
    return DeleteTo({destination, "", "", table, table_name}, true);
}

bool RouteDeleteMasked(const std::string& destination, const std::string& netmask, const std::string& table,
                       const std::string& table_name) {
    return DeleteMasked({destination, netmask, "", table, table_name});
}

bool RouteDeleteNextHop(const std::string& destination, const std::string& netmask,
                        const std::string& gateway, const std::string& table, const std::string& table_name) {
    return DeleteNextHop({destination, netmask, gateway, table, table_name});
}

} // namespace routing
