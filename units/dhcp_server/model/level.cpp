#include "units/dhcp_server/model/level.h"

#include "platform/network.h"
#include "units/dhcp_server/model/addresses.h"

#include <algorithm>

namespace settings::dhcp_server {
namespace {

// The text of the first option of that name below the nodes.
std::string FirstOption(const std::vector<Node>& nodes, const char* name) {
    for (const Node node : nodes) {
        for (Node child = node.FirstChild(); child; child = child.NextSibling()) {
            if (child.IsNamed("option") && child.GetAttr("name") == name)
                return child.GetText();
        }
    }
    return "";
}

// The nodes that a level's values come from: its own, or those that its hosts stand in, each once.
std::vector<Node> SubnetsOf(const std::vector<Node>& nodes) {
    std::vector<Node> subnets;
    for (const Node node : nodes) {
        const Node subnet = node.IsNamed("host") ? node.Parent() : node;
        if (subnets.empty() || subnets.back() != subnet)
            subnets.push_back(subnet);
    }
    return subnets;
}

} // namespace

Range MakeRange(const std::string& from, const std::string& to) {
    return {from, to, ParseAddressQuiet(from), ParseAddressQuiet(to)};
}

std::vector<Range> ReadRanges(const NodeSet& nodes) {
    std::vector<Range> ranges;
    ranges.reserve(nodes.Size());
    for (std::size_t i = 0; i < nodes.Size(); ++i)
        ranges.push_back(MakeRange(nodes.At(i).GetAttr("from"), nodes.At(i).GetAttr("to")));
    return ranges;
}

void HostAddresses::Add(const NodeSet& nodes) {
    entries_.reserve(entries_.size() + nodes.Size());
    for (std::size_t i = 0; i < nodes.Size(); ++i) {
        const std::int64_t value = ParseAddressQuiet(nodes.At(i).GetText());
        by_value_.try_emplace(value, entries_.size());
        entries_.push_back({value, nodes.At(i)});
    }
}

const HostAddresses::Entry* HostAddresses::FindFirst(std::int64_t value) const {
    const auto match = by_value_.find(value);
    const auto malformed = by_value_.find(kNoAddress);
    std::size_t first = entries_.size();
    if (match != by_value_.end())
        first = match->second;
    if (malformed != by_value_.end())
        first = std::min(first, malformed->second);
    return first < entries_.size() ? &entries_[first] : nullptr;
}

std::string SubnetView::Attribute(const char* name) const {
    return nodes_.empty() ? "" : nodes_.front().GetAttr(name);
}

const std::string& SubnetView::Option(const char* name) {
    auto option = options_.find(name);
    if (option == options_.end())
        option = options_.emplace(name, FirstOption(nodes_, name)).first;
    return option->second;
}

const std::vector<Range>& SubnetView::Ranges() {
    if (ranges_)
        return *ranges_;
    ranges_.emplace();
    for (const Node node : nodes_)
        std::ranges::copy(ReadRanges(file_.SelectFrom(node, "range[@from and @to]")),
                          std::back_inserter(*ranges_));
    return *ranges_;
}

const HostAddresses& SubnetView::Hosts() {
    if (hosts_)
        return *hosts_;
    hosts_.emplace();
    for (const Node node : nodes_)
        hosts_->Add(file_.SelectFrom(node, "host/address"));
    return *hosts_;
}

Level::Level(const File& file, std::vector<Node> nodes)
    : file_(file), nodes_(std::move(nodes)), subnet_(std::make_shared<SubnetView>(file, SubnetsOf(nodes_))) {}

Level::Level(const File& file, Node host, std::shared_ptr<SubnetView> subnet)
    : file_(file), nodes_{host}, subnet_(std::move(subnet)) {}

std::string Level::Mask() const {
    const std::string mask = Option("subnet-mask");
    return mask.empty() ? Netmask() : mask;
}

std::string Level::Broadcast() const {
    const std::string broadcast = Option("broadcast-address");
    return broadcast.empty() ? corvanshell::getbrcast(Address(), Mask()) : broadcast;
}

const std::optional<std::string>& Level::ListenAddress() {
    if (listen_address_)
        return *listen_address_;
    listen_address_.emplace();
    for (const Node node : nodes_) {
        const Node interface = file_.SelectFrom(node, "interface[@type = 'listen' and text()]").At(0);
        if (interface && !*listen_address_)
            *listen_address_ = interface.GetAttr("address");
    }
    return *listen_address_;
}

// A host without the option has its subnet's.
std::string Level::Option(const char* name) const {
    const std::string own = IsHost() ? FirstOption(nodes_, name) : "";
    return own.empty() ? subnet_->Option(name) : own;
}

} // namespace settings::dhcp_server
