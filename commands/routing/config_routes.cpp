#include "commands/routing/config_routes.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <vector>

namespace routing {
namespace {

using Text = std::string_view;

// The parts of a text between separators, taken one after the other; none is empty. They are short, so that a
// loop finds their ends sooner than a search.
class Parts {
public:
    Parts(Text text, char separator)
        : place_(text.data()), end_(text.data() + text.size()), separator_(separator) {}

    // The next part without white space at its end; empty when none is left.
    Text Next() {
        while (place_ != end_ && *place_ == separator_)
            ++place_;
        const char* const begin = place_;
        while (place_ != end_ && *place_ != separator_)
            ++place_;
        const char* last = place_;
        while (last != begin && (last[-1] == '\r' || last[-1] == '\t'))
            --last;
        return {begin, static_cast<std::size_t>(last - begin)};
    }

private:
    const char* place_;
    const char* end_;
    char separator_;
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

    // The length is read as strtoul(3) reads it: up to the first letter that is no digit, 0 when that is the
    // first one. "" when there is no such mask.
    Text Find(Text length) const {
        std::size_t number = 0;
        const auto [end, error] = std::from_chars(length.data(), length.data() + length.size(), number);
        const bool fits = error != std::errc::result_out_of_range && !length.starts_with('-');
        return fits && number < masks_.size() ? Text(masks_[number]) : "";
    }

private:
    std::array<std::string, 33> masks_;
};

// What the sort moves: little, for a hundred thousand of them.
struct SortKey {
    std::uint64_t destination; // packed
    std::uint32_t line;        // its place in the text
};

// The prefix of a line "ip route [table <table>] <prefix> <gateway> ...", "" when the line is none. What
// follows stays in `words`.
Text TakePrefix(Parts& words, Text& table) {
    if (words.Next() != "ip" || words.Next() != "route")
        return "";
    const Text word = words.Next();
    if (word != "table") {
        table = kMainTable;
        return word;
    }
    table = words.Next();
    return words.Next();
}

bool TakeRoute(Text line, StaticRoute& route) {
    static const Masks masks;
    Parts words(line, ' ');
    Parts prefix(TakePrefix(words, route.table), '/');
    route.destination = prefix.Next();
    route.prefix_length = prefix.Next();
    route.netmask = masks.Find(route.prefix_length);
    route.gateway = words.Next();
    route.distance = words.Next();
    route.weight = words.Next();
    return !route.prefix_length.empty() && prefix.Next().empty() && !route.netmask.empty() &&
           !route.gateway.empty();
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

// The lines that may be routes, by destination; those of one destination as they were read.
std::vector<SortKey> SortRoutes(Text text) {
    std::vector<SortKey> keys;
    for (std::size_t place = 0; place < text.size();) {
        const Text line = LineAt(text, place);
        Parts words(line, ' ');
        Text table;
        const Text prefix = TakePrefix(words, table);
        if (!prefix.empty())
            keys.push_back({Pack(Parts(prefix, '/').Next()), static_cast<std::uint32_t>(place)});
        place += line.size() + 1;
    }
    const auto precedes = [](const SortKey& left, const SortKey& right) {
        return std::tie(left.destination, left.line) < std::tie(right.destination, right.line);
    };
    if (!std::is_sorted(keys.begin(), keys.end(), precedes))
        std::sort(keys.begin(), keys.end(), precedes);
    return keys;
}

} // namespace

// Sorted first and then appended: a tree that grows in disorder is far slower.
void ParseRoutes(Text configuration, Routes& routes) {
    configuration = configuration.substr(0, UINT32_MAX); // no daemon has so much to say
    for (const SortKey& key : SortRoutes(configuration)) {
        StaticRoute route;
        if (TakeRoute(LineAt(configuration, key.line), route))
            routes.emplace_hint(routes.end(), route.destination, route);
    }
}

} // namespace routing
