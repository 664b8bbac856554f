#include "units/dhcp_relay/relay_list.h"

#include "units/dhcp_relay/rules/lookup.h"

#include <charconv>
#include <optional>

namespace settings::dhcp_relay {
namespace {

std::optional<std::uint64_t> ParseNumber(const std::string& text) {
    // Above this numbers of a query are no longer exact.
    constexpr std::uint64_t kLargest = std::uint64_t{1} << 53;
    std::uint64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number > kLargest)
        return std::nullopt;
    return number;
}

} // namespace

RelayList::RelayList(const File& file) : file_(file) {
    for (Node relay = file.SelectFirst("/unit").FirstChild(); relay; relay = relay.NextSibling()) {
        if (!relay.IsNamed("dhcp-relay") || !relay.HasAttr("id"))
            continue;
        nodes_.push_back(relay);
        const auto number = ParseNumber(relay.GetAttr("id"));
        all_plain_ = all_plain_ && number;
        if (number)
            numbers_[*number].push_back(relay);
    }
}

// Walks the relays of the number, which is much faster than a query for each. Where IDs stand that only a
// query can compare, it is asked.
RelayParts RelayList::Find(const std::string& id) const {
    RelayParts parts;
    const auto number = ParseNumber(id);
    if (all_plain_ && number) {
        for (const Node& relay : numbers_.at(*number)) {
            for (Node child = relay.FirstChild(); child; child = child.NextSibling())
                Take(child, parts);
        }
        return parts;
    }
    const NodeSet children = file_.Select("/unit/dhcp-relay[@id = %s]/*", id);
    for (std::size_t i = 0; i < children.Size(); ++i)
        Take(children.At(i), parts);
    return parts;
}

// The first server of a role counts. An element without a text is none; one with an empty text is a fault.
void RelayList::Take(Node node, RelayParts& parts) const {
    const bool listens = node.IsNamed("interface") && node.GetAttr("type") == "listen";
    const bool serves = node.IsNamed("server") && node.HasAttr("interface");
    if ((!listens && !serves) || (node.GetText().empty() && !file_.SelectFrom(node, "text()")))
        return;
    const std::string role = listens ? "" : node.GetAttr("id");
    if (listens)
        parts.listen_interfaces.push_back(node);
    else if (role == kExternalServer && !parts.external_server)
        parts.external_server = node;
    else if (role == kBackupServer && !parts.backup_server)
        parts.backup_server = node;
}

} // namespace settings::dhcp_relay
