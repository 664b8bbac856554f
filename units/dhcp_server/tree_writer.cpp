#include "units/dhcp_server/tree_writer.h"

#include "platform/console.h"
#include "units/dhcp_server/interface_rules.h"
#include "units/dhcp_server/line_writer.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/model/addresses.h"
#include "units/dhcp_server/model/subnet_view.h"
#include "units/dhcp_server/option_writer.h"

#include <cstring>

namespace settings::dhcp_server {
namespace {

// Subnets stand in the unit and hosts in subnets. An element that stands deeper would lead the walk back to
// where it came from.
constexpr int kMaximumDepth = 2;

Node ChildNamed(Node parent, const char* name) {
    Node child = parent.FirstChild();
    while (child && !child.IsNamed(name))
        child = child.NextSibling();
    return child;
}

bool ReportMisplaced(const Area& area) {
    shell_print_error("DHCP server: %s: corrupted settings file", area.Name().c_str());
    return false;
}

bool CheckPair(const Area& area, const Range& first, const Range& second) {
    if (first.from < 0 || first.to < 0 || second.from < 0 || second.to < 0)
        return false; // reported already
    if (second.from > second.to) {
        shell_print_error("DHCP server: %s: %s [%s - %s] is invalid", area.Name().c_str(), kRangeLabel,
                          second.from_text.c_str(), second.to_text.c_str());
        return false;
    }
    if (first.to < second.from || second.to < first.from)
        return true;
    shell_print_error("DHCP server: %s: %s [%s - %s] intersects with %s [%s - %s]", area.Name().c_str(),
                      kRangeLabel, first.from_text.c_str(), first.to_text.c_str(), kRangeLabel,
                      second.from_text.c_str(), second.to_text.c_str());
    return false;
}

// Every range against those behind it.
bool CheckRangesApart(const TreeWriter& writer, const Area& area) {
    const std::vector<Range> ranges = ReadRanges(SelectIn(area, writer.file, "range"));
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

struct SubnetTexts {
    std::string address;
    std::string netmask;
    std::string interface;
    bool is_listen;
};

bool CheckSubnet(TreeWriter& writer, const Area& parent, const Area& area, const SubnetTexts& texts) {
    bool passed = CheckServedInterface(writer.memory.NetworkRecord(), texts.interface, texts.is_listen, true);
    if (!texts.is_listen && !writer.memory.HasLocalSubnet(texts.interface)) {
        shell_print_error("DHCP server: %s: relay interface does not correspond to any listen interface",
                          area.Name().c_str());
        passed = false;
    }
    passed = ParseAddress(texts.address, parent.Name(), "subnet address") != kNoAddress && passed;
    passed = ParseAddress(texts.netmask, parent.Name(), "subnet netmask") != kNoAddress && passed;
    return CheckRangesApart(writer, area) && passed;
}

// The lines of a block: its head, what stands below the area, and for the daemon its end.
bool WriteBlock(TreeWriter& writer, const std::string& head, const Area& area) {
    bool written = WriteLine(writer, writer.daemon_form ? head + " {" : head);
    ++writer.depth;
    written = WriteTree(writer, area) && written;
    --writer.depth;
    return (!writer.daemon_form || WriteLine(writer, "}")) && written;
}

bool WriteSubnet(TreeWriter& writer, const Area& parent, Node node) {
    if (writer.depth >= kMaximumDepth)
        return ReportMisplaced(parent);
    const Node interface = ChildNamed(node, "interface");
    const SubnetTexts texts = {node.GetAttr("address"), node.GetAttr("netmask"), interface.GetText(),
                               interface.GetAttr("type") == "listen"};
    LocalSubnet local(texts.interface);
    RemoteSubnet remote(texts.address, texts.netmask);
    Area& area = texts.is_listen ? static_cast<Area&>(local) : remote;
    SubnetView view(writer.file, node);
    if (texts.is_listen ? writer.memory.IsOnlyLocalSubnet(texts.interface, node)
                        : writer.memory.IsOnlyRemoteSubnet(texts.address, texts.netmask, node))
        area.Bind(node, &view);
    const bool passed = !writer.daemon_form || CheckSubnet(writer, parent, area, texts);
    return WriteBlock(writer, "subnet " + texts.address + " netmask " + texts.netmask, area) && passed;
}

// The daemon's host block, in which the client's addresses are lines of their own.
bool WriteDaemonHost(TreeWriter& writer, const Area& parent, const Area& host, Node node) {
    const Node hardware = ChildNamed(node, "hardware");
    const std::string address = ChildNamed(node, "address").GetText();
    bool passed = CheckAddressScope(parent, writer.file, host.Name().c_str(), address);
    // The block of a name that can't be is left out whole.
    if (!CheckValue(writer, "host", host.Name()))
        return false;
    passed = WriteLine(writer, "host " + host.Name() + " {") && passed;
    ++writer.depth;
    passed =
        WriteSetting(writer, "hardware", hardware.GetAttr("type") + " " + hardware.GetAttr("mac")) && passed;
    passed = WriteSetting(writer, "fixed-address", address) && passed;
    passed = WriteTree(writer, host) && passed;
    --writer.depth;
    return WriteLine(writer, "}") && passed;
}

bool WriteReadableHost(TreeWriter& writer, const Area& host, Node node) {
    const std::string mac = ChildNamed(node, "hardware").GetAttr("mac");
    const std::string address = ChildNamed(node, "address").GetText();
    if (!WriteLine(writer, "host " + host.Name()))
        return false;
    ++writer.depth;
    const bool written =
        WriteSetting(writer, "hardware", mac + ", fixed-address = " + address) && WriteTree(writer, host);
    --writer.depth;
    return written;
}

bool WriteHost(TreeWriter& writer, const Area& parent, Node node) {
    if (writer.depth >= kMaximumDepth)
        return ReportMisplaced(parent);
    const std::string name = node.GetAttr("name");
    Host host(name);
    if (writer.memory.IsOnlyHost(name, node)) {
        SubnetView* view = parent.View();
        host.Bind(node, view != nullptr && view->Subnet() == node.Parent() ? view : nullptr);
    }
    return writer.daemon_form ? WriteDaemonHost(writer, parent, host, node)
                              : WriteReadableHost(writer, host, node);
}

bool WriteRange(TreeWriter& writer, const Area& area, Node node) {
    const std::string from = node.GetAttr("from");
    const std::string to = node.GetAttr("to");
    const bool passed = !writer.daemon_form || CheckRange(area, writer.file, from, to);
    return WriteSetting(writer, kRangeLabel, from + " " + to) && passed;
}

bool WriteInterface(TreeWriter& writer, const Area& /*area*/, Node node) {
    if (writer.daemon_form)
        return true;
    return WriteSetting(writer, node.GetAttr("type") == "listen" ? "interface" : "relay interface",
                        node.GetText());
}

// What stands in the lines of its parent already.
bool WriteNothing(TreeWriter& /*writer*/, const Area& /*area*/, Node /*node*/) {
    return true;
}

bool WritePlain(TreeWriter& writer, const Area& /*area*/, Node node) {
    return WriteSetting(writer, node.Name(), node.GetText());
}

struct ElementRow {
    const char* name;
    bool (*write)(TreeWriter& writer, const Area& area, Node node);
};

constexpr ElementRow kElements[] = {
    {"subnet", WriteSubnet},   {"host", WriteHost},           {"option", WriteOptionNode},
    {"range", WriteRange},     {"interface", WriteInterface}, {"hardware", WriteNothing},
    {"address", WriteNothing},
};

bool WriteElement(TreeWriter& writer, const Area& area, Node node) {
    for (const ElementRow& row : kElements) {
        if (node.IsNamed(row.name))
            return row.write(writer, area, node);
    }
    return WritePlain(writer, area, node);
}

// What the daemon must be told before the first subnet.
bool WriteDeclarations(TreeWriter& writer, const Area& area) {
    bool passed = WriteLine(writer, "authoritative;");
    passed = WriteOption(writer, "voip-tftp-server", "code 150 = array of ip-address") && passed;
    return WriteCustomDeclarations(writer, area) && passed;
}

} // namespace

bool WriteTree(TreeWriter& writer, const Area& area) {
    bool passed = true;
    if (area.BoundNode()) {
        for (Node child = area.BoundNode().FirstChild(); child; child = child.NextSibling())
            passed = WriteElement(writer, area, child) && passed;
        return passed;
    }
    const NodeSet children = SelectIn(area, writer.file, "child::*");
    for (std::size_t i = 0; i < children.Size(); ++i)
        passed = WriteElement(writer, area, children.At(i)) && passed;
    return passed;
}

bool WriteHostBlock(TreeWriter& writer, Node node) {
    if (!node)
        return true;
    Host host(node.GetAttr("name"));
    host.Bind(node, nullptr);
    return WriteReadableHost(writer, host, node);
}

bool GenerateDaemonSettings(const File& file, std::FILE* out, const Area& area) {
    TreeWriter writer(file, out, true);
    const Node node = area.GetNode(file);
    if (!node)
        return false;
    bool passed = true;
    if (node == file.Root()) {
        if (!SelectIn(area, file, "child::subnet")) {
            shell_print_error("DHCP server: no subnets are configured");
            return false;
        }
        passed = WriteDeclarations(writer, area);
    }
    passed = WriteTree(writer, area) && passed;
    if (out != nullptr && std::fflush(out) != 0)
        return ReportWriteFailure(writer);
    return passed;
}

} // namespace settings::dhcp_server
