#include "commands/routing/route_forms.h"

#include "commands/arguments/arguments.h"
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

bool ResolveTable(const std::string& name, std::string& number) {
    if (number.empty() && !name.empty())
        return FindTableNumber(name, number);
    if (number.empty())
        number = kMainTable;
    return true;
}

} // namespace routing
