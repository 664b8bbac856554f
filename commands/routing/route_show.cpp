#include "commands/routing/route_show.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/route_listing.h"
#include "commands/routing/route_store.h"
#include "commands/routing/tables.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "platform/processes.h"

#include <cstdio>

namespace routing {
namespace {

bool PrintTable(const RouteStore& store, const std::string& number) {
    return WriteText(JoinLines(FormatRoutes(store.All(), number)), stdout);
}

} // namespace

bool ShowRouting() {
    if (IsDisabledOnPassiveNode(gettext(kFeature)))
        return false;
    std::string output;
    if (corvanshell::run("/sbin/ip route show 0.0.0.0/0", output) != 0 || output.empty())
        PrintWarning(
            Tr("the default route is not set, this could prevent from the reliable mode of operation"));
    return BaseExec::run(vtysh::QuestionLine(vtysh::kZebra, "show ip route") + " | /sbin/textpager.sh -") ==
           0;
}

bool ShowStaticRoutes() {
    if (IsDisabledOnPassiveNode(gettext(kFeature)))
        return false;
    LogInfo("command: inet show routing static");
    const RouteStore store;
    bool printed = false;
    if (!PrintTables(store.All(), GetTableNumbers(), printed))
        return false;
    if (!printed)
        PrintInfo(Tr("No static routes defined"));
    return true;
}

bool ShowRouteTable(const std::string& number) {
    if (IsDisabledOnPassiveNode(gettext(kFeature)) ||
        !arguments::Check({{number, arguments::IsNumber, "table number"}}))
        return false;
    const RouteStore store;
    if (!TableHasRoutes(number))
        return Refuse(Tr("Failed to show static route. Routes don't exist in this table."));
    return PrintTable(store, number);
}

bool ShowRouteTableByName(const std::string& name) {
    if (IsDisabledOnPassiveNode(gettext(kFeature)) ||
        !arguments::Check({{name, arguments::IsName, "table name", true}}))
        return false;
    const RouteStore store;
    const std::string number = GetTableNumber(name);
    if (!name.empty() && !TableNameMatches(number, name))
        return Refuse(Tr("Failed to show static route. Table name doesn't match table number."));
    if (!TableHasRoutes(number))
        return Refuse(Tr("Failed to show static route. Routes doesn't exist in this table."));
    return PrintTable(store, number);
}

} // namespace routing
