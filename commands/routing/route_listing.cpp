#include "commands/routing/route_listing.h"

#include "commands/routing/tables.h"
#include "platform/console.h"
#include "platform/path_list.h"

#include <algorithm>
#include <unordered_map>

namespace routing {
namespace {

constexpr const char* kHeader = "Destination      Netmask          Next hop         Distance Weight";
constexpr const char* kRule = "-----------      -------          --------         -------- ------";
constexpr std::size_t kLineWidth = 66;
constexpr std::size_t kAddressWidth = 15;
constexpr std::size_t kNumberWidth = 3;

using RouteList = std::vector<const StaticRoute*>;

void AddColumn(std::string& line, const std::string& text, std::size_t width, std::size_t gap) {
    line.append(text, 0, width);
    line.append(width - std::min(text.size(), width) + gap, ' ');
}

std::string FormatRoute(const StaticRoute& route) {
    std::string line;
    line.reserve(kLineWidth);
    AddColumn(line, route.destination, kAddressWidth, 2);
    AddColumn(line, route.netmask, kAddressWidth, 2);
    AddColumn(line, route.gateway, kAddressWidth, 2);
    AddColumn(line, route.EffectiveDistance(), kNumberWidth, 6);
    AddColumn(line, route.EffectiveWeight(), kNumberWidth, 0);
    return line;
}

Lines FormatTable(const std::string& number, const RouteList& routes) {
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!LockSettings(lock))
        return {};
    Lines lines{corvanshell::WrapStr("Table " + number + " (" + GetTableName(number) + ")", kLineWidth),
                kHeader, kRule};
    lines.reserve(lines.size() + routes.size());
    for (const StaticRoute* route : routes)
        lines.push_back(FormatRoute(*route));
    return lines;
}

} // namespace

Lines FormatRoutes(const Routes& routes, const std::string& table) {
    if (routes.empty())
        return {};
    const std::string& number = table.empty() ? kMainTable : table;
    RouteList listed;
    for (const auto& [destination, route] : routes) {
        if (route.table == number)
            listed.push_back(&route);
    }
    return FormatTable(number, listed);
}

std::string FormatTables(const Routes& routes, const Lines& tables) {
    std::string text;
    if (routes.empty())
        return text;
    std::unordered_map<std::string, RouteList> by_table;
    for (const auto& [destination, route] : routes)
        by_table[route.table].push_back(&route);
    for (const std::string& number : tables) {
        const Lines lines = FormatTable(number, by_table[number]);
        if (!lines.empty())
            text += JoinLines(lines) + "\n";
    }
    return text;
}

Lines FormatRoutesPlain(const RouteStore& store, const Routes& routes) {
    if (!store.HasLock())
        return {};
    Lines lines{kHeader, kRule};
    for (const auto& [destination, route] : routes)
        lines.push_back(FormatRoute(route));
    return lines;
}

std::string JoinLines(const Lines& lines) {
    std::size_t size = 0;
    for (const std::string& line : lines)
        size += line.size() + 1;
    std::string text;
    text.reserve(size);
    for (const std::string& line : lines)
        (text += line) += '\n';
    return text;
}

} // namespace routing
