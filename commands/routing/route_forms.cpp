#include "commands/routing/route_forms.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/route_add.h"
#include "commands/routing/route_delete.h"
#include "commands/routing/route_store.h"
#include "commands/routing/tables.h"
#include "front/probes/cluster.h"

#include <libintl.h>

namespace routing {

bool FindTableNumber(const std::string& name, std::string& number) {
    if (IsDisabledOnPassiveNode(gettext(kFeature)) ||
        !arguments::Check({{name, arguments::IsName, "table name"}}))
        return false;
    const RouteStore store;
    number = GetTableNumber(name);
    return true;
}

bool RouteAddToTableNamed(const std::string& destination, const std::string& netmask,
                          const std::string& gateway, const std::string& table_name,
                          const std::string& distance, const std::string& weight) {
    std::string number;
    return FindTableNumber(table_name, number) &&
           RouteAdd(destination, netmask, gateway, number, table_name, distance, weight);
}

bool RouteDeleteMaskedOfTableNamed(const std::string& destination, const std::string& netmask,
                                   const std::string& table_name) {
    std::string number;
    return FindTableNumber(table_name, number) && RouteDeleteMasked(destination, netmask, number, table_name);
}

bool RouteDeleteNextHopOfTableNamed(const std::string& destination, const std::string& netmask,
                                    const std::string& gateway, const std::string& table_name) {
    std::string number;
    return FindTableNumber(table_name, number) &&
           RouteDeleteNextHop(destination, netmask, gateway, number, table_name);
}

} // namespace routing
