#include "commands/routing/config_routes.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace routing {
namespace {

using Text = std::string_view;

// The words of a line, taken one after the other.
class Words {
public:
    explicit Words(Text line) : next_(line.data()), end_(line.data() + line.size()) {}

    // The next word without white space at its ends; empty when none is left.
    Text Next() {
        while (next_ != end_ && *next_ == ' ')
            ++next_;
        const char* const start = next_;
        while (next_ != end_ && *next_ != ' ')
            ++next_;
        Text word(start, static_cast<std::size_t>(next_ - start));
        while (!word.empty() && (word.back() == '\r' || word.back() == '\t'))
            word.remove_suffix(1);
        return word;
    }

private:
    const char* next_;
    const char* end_;
};

// The masks of the lengths 0 to 32.
class Masks {
public:
    Masks() {
        for (std::size_t length = 0; length < masks_.size(); ++length) {
            const in_addr mask{htonl(length == 0 ? 0 : ~std::uint32_t{0} << (32 - length))};
            masks_[length] = inet_ntoa(mask);
        }
    }

    // Null when the text is no length.
    const std::string* Find(Text length) const {
        std::size_t number = masks_.size();
        const auto [end, error] = std::from_chars(length.data(), length.data() + length.size(), number);
        const bool is_number = error == std::errc() && end == length.data() + length.size();
        return is_number && number < masks_.size() ? &masks_[number] : nullptr;
    }

private:
    std::array<std::string, 33> masks_;
};

// A route in the place where it was read.
struct RouteView {
    Text destination;
    Text prefix_length;
    Text gateway;
    Text distance;
    Text weight;
    Text table;
    const std::string* netmask = nullptr;
};

// What the sort moves: little, for a hundred thousand of them.
struct SortKey {
    std::uint64_t destination; // packed
    std::uint32_t line;        // its place in the text
};

// "<address>/<length>"; false when it is anything else.
bool TakePrefix(Text prefix, const Masks& masks, RouteView& route) {
    prefix.remove_prefix(std::min(prefix.find_first_not_of('/'), prefix.size()));
    prefix = prefix.substr(0, prefix.find_last_not_of('/') + 1);
    const std::size_t slash = prefix.find('/');
    if (slash == Text::npos)
        return false;
    route.destination = prefix.substr(0, slash);
    route.prefix_length = prefix.substr(prefix.find_first_not_of('/', slash));
    route.netmask = masks.Find(route.prefix_length);
    return route.netmask != nullptr;
}

bool TakeRoute(Text line, const Masks& masks, RouteView& route) {
    Words words(line);
    if (words.Next() != "ip" || words.Next() != "route")
        return false;
    route.table = kMainTable;
    Text prefix = words.Next();
    if (prefix == "table") {
        route.table = words.Next();
        prefix = words.Next();
    }
    route.gateway = words.Next();
    route.distance = words.Next();
    route.weight = words.Next();
    return !route.gateway.empty() && TakePrefix(prefix, masks, route);
}

// Half a byte for each letter: two addresses, which have 15 at most, compare like their texts. Other texts
// may not, and then the map puts them right.
std::uint64_t Pack(Text destination) {
    std::uint64_t packed = 0;
    for (std::size_t i = 0; i < 2 * sizeof packed; ++i) {
        const char letter = i < destination.size() ? destination[i] : '\0';
        const bool is_digit = letter >= '0' && letter <= '9';
        packed = packed << 4 | static_cast<std::uint64_t>(is_digit ? letter - '0' + 2 : letter == '.');
    }
    return packed;
}

// The line at a place of the text.
Text LineAt(Text text, std::size_t place) {
    return text.substr(place, text.find('\n', place) - place);
}

// The lines that are routes, by destination; those of one destination as they were read.
std::vector<SortKey> SortRoutes(Text text, const Masks& masks) {
    std::vector<SortKey> keys;
    RouteView view;
    for (std::size_t place = 0; place < text.size();) {
        const Text line = LineAt(text, place);
        if (TakeRoute(line, masks, view))
            keys.push_back({Pack(view.destination), static_cast<std::uint32_t>(place)});
        place += line.size() + 1;
    }
    std::sort(keys.begin(), keys.end(), [](const SortKey& left, const SortKey& right) {
        return std::tie(left.destination, left.line) < std::tie(right.destination, right.line);
    });
    return keys;
}

void Append(Routes& routes, const RouteView& view) {
    StaticRoute& route = routes
                             .emplace_hint(routes.end(), std::piecewise_construct,
                                           std::forward_as_tuple(view.destination), std::tuple<>())
                             ->second;
    route.destination = view.destination;
    route.gateway = view.gateway;
    route.netmask = *view.netmask;
    route.prefix_length = view.prefix_length;
    route.distance = view.distance;
    route.weight = view.weight;
    route.table = view.table;
}

} // namespace

// Sorted first and then appended: a tree that grows in disorder is far slower.
Routes ParseRoutes(Text configuration) {
    const Masks masks;
    Routes routes;
    configuration = configuration.substr(0, UINT32_MAX); // no daemon has so much to say
    for (const SortKey& key : SortRoutes(configuration, masks)) {
        RouteView view;
        if (TakeRoute(LineAt(configuration, key.line), masks, view))
            Append(routes, view);
    }
    return routes;
}

} // namespace routing
