#include "commands/routing/route_listing.h"

#include "commands/routing/tables.h"
#include "front/helpers/settings_lock.h"
#include "platform/messages.h"
#include "platform/path_list.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>
#include <string_view>

namespace routing {
namespace {

constexpr const char* kHeader = "Destination      Netmask          Next hop         Distance Weight";
constexpr const char* kRule = "-----------      -------          --------         -------- ------";
constexpr std::size_t kLineWidth = 66;
constexpr std::size_t kRouteWidth = 63;
constexpr std::size_t kAddressWidth = 15;
constexpr std::size_t kNumberWidth = 3;
constexpr std::size_t kPieceSize = 65536;

using RouteList = std::vector<const StaticRoute*>;

// A line is put together in place: a listing may have a hundred thousand of them.
class RouteLine {
public:
    explicit RouteLine(const StaticRoute& route) {
        std::memset(line_, ' ', kRouteWidth);
        line_[kRouteWidth] = '\n';
        Put(0, route.destination, kAddressWidth);
        Put(17, route.netmask, kAddressWidth);
        Put(34, route.gateway, kAddressWidth);
        Put(51, route.EffectiveDistance(), kNumberWidth);
        Put(60, route.EffectiveWeight(), kNumberWidth);
    }
    std::string_view Text() const { return {line_, kRouteWidth}; }
    std::string_view WithNewline() const { return {line_, kRouteWidth + 1}; }

private:
    void Put(std::size_t column, std::string_view text, std::size_t width) {
        std::memcpy(line_ + column, text.data(), std::min(text.size(), width));
    }

    char line_[kRouteWidth + 1];
};

// The lines above a table's routes. None when the settings lock is not granted.
Lines FormatHeading(const std::string& number) {
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!LockForChange(lock))
        return {};
    return {corvanshell::WrapStr("Table " + number + " (" + GetTableName(number) + ")", kLineWidth), kHeader,
            kRule};
}

void PrintAndClear(std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    text.clear();
}

// By pieces that are larger than the stream's own.
void PrintLines(const RouteList& routes, std::string& text) {
    for (const StaticRoute* route : routes) {
        text += RouteLine(*route).WithNewline();
        if (text.size() >= kPieceSize)
            PrintAndClear(text);
    }
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
bool PrintTables(const Routes& routes, const Lines& tables, bool& printed) {
    printed = false;
    if (routes.empty())
        return true;
    std::map<std::string_view, RouteList> by_table;
    for (const auto& [destination, route] : routes)
        by_table[route.table].push_back(&route);
    std::string text;
    for (const std::string& number : tables) {
        const Lines heading = FormatHeading(number);
        if (heading.empty())
            continue;
        text += JoinLines(heading);
        PrintLines(by_table[number], text);
        text += '\n';
        printed = true;
    }
    return WriteText(text, stdout);
}

bool WriteText(const std::string& text, std::FILE* stream) {
    std::fwrite(text.data(), 1, text.size(), stream);
    if (std::fflush(stream) == 0 && std::ferror(stream) == 0)
        return true;
    const int error = errno;
    std::clearerr(stream);
    return error != EPIPE && Refuse("failed to write to stream: %s", std::strerror(error));
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
