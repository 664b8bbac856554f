#include "units/dhcp_server/model/subnet_view.h"

#include "units/dhcp_server/model/addresses.h"

namespace settings::dhcp_server {

std::vector<Range> ReadRanges(const NodeSet& nodes) {
    std::vector<Range> ranges;
    ranges.reserve(nodes.Size());
    for (std::size_t i = 0; i < nodes.Size(); ++i) {
        const std::string from = nodes.At(i).GetAttr("from");
        const std::string to = nodes.At(i).GetAttr("to");
        ranges.push_back({from, to, ParseAddressQuiet(from), ParseAddressQuiet(to)});
    }
    return ranges;
}

HostAddresses::HostAddresses(const NodeSet& nodes) {
    entries_.reserve(nodes.Size());
    for (std::size_t i = 0; i < nodes.Size(); ++i) {
        const Node node = nodes.At(i);
        const std::string text = node.GetText();
        entries_.push_back({text, ParseAddressQuiet(text), node.Parent().GetAttr("name")});
        by_value_.try_emplace(entries_.back().value, i);
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

const std::string& SubnetView::Option(const char* name) {
    auto option = options_.find(name);
    if (option == options_.end()) {
        const std::string text = file_.SelectFrom(subnet_, "option[@name = '%s']", name).At(0).GetText();
        option = options_.emplace(name, text).first;
    }
    return option->second;
}

const std::optional<std::string>& SubnetView::ListenAddress() {
    if (!listen_address_) {
        const Node node = file_.SelectFrom(subnet_, "interface[@type = 'listen' and text()]").At(0);
        listen_address_.emplace();
        if (node)
            *listen_address_ = node.GetAttr("address");
    }
    return *listen_address_;
}

const std::vector<Range>& SubnetView::Ranges() {
    if (!ranges_)
        ranges_ = ReadRanges(file_.SelectFrom(subnet_, "range[@from and @to]"));
    return *ranges_;
}

const HostAddresses& SubnetView::Hosts() {
    if (!hosts_)
        hosts_.emplace(file_.SelectFrom(subnet_, "host/address"));
    return *hosts_;
}

} // namespace settings::dhcp_server
