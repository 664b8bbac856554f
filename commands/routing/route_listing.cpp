#include "commands/routing/route_listing.h"

#include "commands/routing/tables.h"
#include "platform/console.h"
#include "platform/path_list.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <string_view>

namespace routing {
namespace {

constexpr const char* kHeader = "Destination      Netmask          Next hop         Distance Weight";
constexpr const char* kRule = "-----------      -------          --------         -------- ------";
constexpr std::size_t kLineWidth = 66;
constexpr std::size_t kAddressWidth = 15;
constexpr std::size_t kNumberWidth = 3;

using RouteList = std::vector<const StaticRoute*>;

// A line is put together in place: a listing may have a hundred thousand of them.
class RouteLine {
public:
    explicit RouteLine(const StaticRoute& route) {
        Add(route.destination, kAddressWidth, 2);
        Add(route.netmask, kAddressWidth, 2);
        Add(route.gateway, kAddressWidth, 2);
        Add(route.EffectiveDistance(), kNumberWidth, 6);
        Add(route.EffectiveWeight(), kNumberWidth, 0);
    }
    std::string_view Text() const { return {line_, size_}; }

private:
    void Add(std::string_view text, std::size_t width, std::size_t gap) {
        const std::size_t taken = std::min(text.size(), width);
        std::memset(line_ + size_, ' ', width + gap);
        std::memcpy(line_ + size_, text.data(), taken);
        size_ += width + gap;
    }

    char line_[kLineWidth];
    std::size_t size_ = 0;
};

// The lines above a table's routes. None when the settings lock is not granted.
Lines FormatHeading(const std::string& number) {
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!vtysh::LockSettings(lock))
        return {};
    return {corvanshell::WrapStr("Table " + number + " (" + GetTableName(number) + ")", kLineWidth), kHeader,
            kRule};
}

void Print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

} // namespace

Lines FormatRoutes(const Routes& routes, const std::string& table) {
    if (routes.empty())
        return {};
    const std::string& number = table.empty() ? kMainTable : table;
    Lines lines = FormatHeading(number);
    for (const auto& [destination, route] : routes) {
        if (!lines.empty() && route.table == number)
            lines.emplace_back(RouteLine(route).Text());
    }
    return lines;
}

// One walk over the routes, however many tables there are, and no text of them all.
bool PrintTables(const Routes& routes, const Lines& tables) {
    if (routes.empty())
        return false;
    std::map<std::string_view, RouteList> by_table;
    for (const auto& [destination, route] : routes)
        by_table[route.table].push_back(&route);
    bool printed = false;
    for (const std::string& number : tables) {
        const Lines heading = FormatHeading(number);
        if (heading.empty())
            continue;
        Print(JoinLines(heading));
        for (const StaticRoute* route : by_table[number]) {
            Print(RouteLine(*route).Text());
            Print("\n");
        }
        Print("\n");
        printed = true;
    }
    std::fflush(stdout);
    return printed;
}

Lines FormatRoutesPlain(const RouteStore& store, const Routes& routes) {
    if (!store.HasLock())
        return {};
    Lines lines{kHeader, kRule};
    for (const auto& [destination, route] : routes)
        lines.emplace_back(RouteLine(route).Text());
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
