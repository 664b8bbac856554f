#include "commands/routing/config_routes.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace routing {
namespace {

using Text = std::string_view;

// The words of a line, taken one after the other.
class Words {
public:
    explicit Words(Text line) : rest_(line) {}

    // The next word without white space at its ends; empty when none is left.
    Text Next() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
        Text word = rest_.substr(0, rest_.find(' '));
        rest_.remove_prefix(word.size());
        while (!word.empty() && (word.back() == '\r' || word.back() == '\t'))
            word.remove_suffix(1);
        return word;
    }

private:
    Text rest_;
};

std::string MaskOf(const std::string& prefix_length) {
    constexpr unsigned long full = 32;
    const unsigned long length = std::min(std::strtoul(prefix_length.c_str(), nullptr, 10), full);
    const in_addr mask{htonl(length == 0 ? 0 : ~std::uint32_t{0} << (full - length))};
    return inet_ntoa(mask);
}

// "<address>/<length>"; false when it is anything else.
bool TakePrefix(Text prefix, StaticRoute& route) {
    prefix.remove_prefix(std::min(prefix.find_first_not_of('/'), prefix.size()));
    prefix = prefix.substr(0, prefix.find_last_not_of('/') + 1);
    const std::size_t slash = prefix.find('/');
    if (slash == Text::npos)
        return false;
    Text length = prefix.substr(slash);
    length.remove_prefix(length.find_first_not_of('/'));
    const bool is_number = length.find_first_not_of("0123456789") == Text::npos;
    if (!is_number || length.size() > 2 || std::atoi(std::string(length).c_str()) > 32)
        return false;
    route.destination = prefix.substr(0, slash);
    route.prefix_length = length;
    return true;
}

bool TakeRoute(Text line, StaticRoute& route) {
    Words words(line);
    if (words.Next() != "ip" || words.Next() != "route")
        return false;
    Text prefix = words.Next();
    if (prefix == "table") {
        route.table = words.Next();
        prefix = words.Next();
    } else {
        route.table = kMainTable;
    }
    route.gateway = words.Next();
    route.distance = words.Next();
    route.weight = words.Next();
    if (route.gateway.empty() || !TakePrefix(prefix, route))
        return false;
    route.netmask = MaskOf(route.prefix_length);
    return true;
}

} // namespace

// Sorted first and then appended: sorting side by side is far quicker than growing a tree in disorder.
Routes ParseRoutes(const Lines& configuration) {
    std::vector<StaticRoute> parsed;
    parsed.reserve(configuration.size());
    for (const std::string& line : configuration) {
        StaticRoute route;
        if (TakeRoute(line, route))
            parsed.push_back(std::move(route));
    }
    const auto by_destination = [](const StaticRoute& left, const StaticRoute& right) {
        return left.destination < right.destination;
    };
    if (!std::is_sorted(parsed.begin(), parsed.end(), by_destination))
        std::stable_sort(parsed.begin(), parsed.end(), by_destination);
    Routes routes;
    for (StaticRoute& route : parsed) {
        std::string destination = route.destination;
        routes.emplace_hint(routes.end(), std::move(destination), std::move(route));
    }
    return routes;
}

} // namespace routing
