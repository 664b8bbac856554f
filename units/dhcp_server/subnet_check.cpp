#include "units/dhcp_server/subnet_check.h"

#include "platform/messages.h"
#include "units/dhcp_server/interface_rules.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/model/addresses.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>
#include <vector>

namespace settings::dhcp_server {
namespace {

bool CheckPair(const Area& area, const Range& first, const Range& second) {
    if (first.from < 0 || first.to < 0 || second.from < 0 || second.to < 0)
        return false; // reported already
    return second.from > second.to ? RefuseInvalid(area, second) : CheckApart(area, first, second);
}

// Every range against those behind it.
bool CheckRangesApart(const TreeWriter& writer, const Level& level, const Area& area) {
    std::vector<Range> ranges;
    for (const Node node : level.Nodes())
        std::ranges::copy(ReadRanges(writer.file.SelectFrom(node, "range")), std::back_inserter(ranges));
    if (ranges.size() < 2)
        return true;
    bool passed = true;
    for (const Range& range : ranges)
        passed = HasBounds(area, range) && passed;
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        for (std::size_t j = i + 1; j < ranges.size(); ++j)
            passed = CheckPair(area, ranges[i], ranges[j]) && passed;
    }
    return passed;
}

// What stands in quotes in a file that the daemon's start script reads with a shell, and behind them as words
// of the daemon's line.
bool IsInterfaceName(const std::string& name) {
    constexpr std::string_view kMarks = ".:_@+-";
    const auto is_good = [&](unsigned char letter) {
        return std::isalnum(letter) != 0 || kMarks.find(static_cast<char>(letter)) != std::string_view::npos;
    };
    return !name.starts_with('-') && std::ranges::all_of(name, is_good);
}

bool CheckInterfaceNames(const Area& area, Node subnet) {
    bool passed = true;
    for (Node child = subnet.FirstChild(); child; child = child.NextSibling()) {
        if (child.IsNamed("interface") && !IsInterfaceName(child.GetText()))
            passed = Refuse("DHCP server: %s: incorrect interface name: %s", area.Name(), child.GetText());
    }
    return passed;
}

// What stands in either of two subnets of one name is written into the blocks of both.
void WarnOfSecond(TreeWriter& writer, const Area& area, const SubnetTexts& texts) {
    const std::string network = texts.address + "/" + texts.netmask;
    const bool is_second_network = writer.memory.IsSecond("network " + network);
    if (texts.is_listen && writer.memory.IsSecond("interface " + texts.interface))
        PrintWarning("DHCP server: %s: a second subnet of this interface", area.Name());
    else if (is_second_network)
        PrintWarning("DHCP server: %s: a second subnet of network %s", area.Name(), network);
}

} // namespace

bool CheckSubnet(TreeWriter& writer, const Area& parent, const Area& area, Node node,
                 const SubnetTexts& texts) {
    if (writer.depth == 0)
        WarnOfSecond(writer, area, texts);
    WalkMemory& memory = writer.memory;
    bool passed =
        CheckServedInterface(memory.NetworkRecord(), memory.Relays(), texts.interface, texts.is_listen, true);
    passed = CheckInterfaceNames(area, node) && passed;
    if (!texts.is_listen && !memory.HasLocalSubnet(texts.interface))
        passed = RefuseRelay(area);
    passed = ParseAddress(texts.address, parent.Name(), "subnet address") != kNoAddress && passed;
    passed = ParseAddress(texts.netmask, parent.Name(), "subnet netmask") != kNoAddress && passed;
    return CheckRangesApart(writer, *area.LevelIn(writer.file), area) && passed;
}

} // namespace settings::dhcp_server
