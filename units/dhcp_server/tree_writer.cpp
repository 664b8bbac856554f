#include "units/dhcp_server/tree_writer.h"

#include "platform/messages.h"
#include "units/dhcp_server/line_writer.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/model/level.h"
#include "units/dhcp_server/option_writer.h"
#include "units/dhcp_server/subnet_check.h"

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

bool RefuseMisplaced(const Area& area) {
    return Refuse("DHCP server: %s: corrupted settings file", area.Name());
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
        return RefuseMisplaced(parent);
    const Node interface = ChildNamed(node, "interface");
    const SubnetTexts texts = {node.GetAttr("address"), node.GetAttr("netmask"), interface.GetText(),
                               interface.GetAttr("type") == "listen"};
    LocalSubnet local(texts.interface);
    RemoteSubnet remote(texts.address, texts.netmask);
    Area& area = texts.is_listen ? static_cast<Area&>(local) : remote;
    area.Bind(texts.is_listen ? writer.memory.LevelOf(local) : writer.memory.LevelOf(remote));
    const bool passed = !writer.daemon_form || CheckSubnet(writer, parent, area, node, texts);
    const std::string pair = texts.address + " netmask " + texts.netmask;
    // The block of a pair that can't be is left out whole.
    return CheckValue(writer, "subnet", pair) && WriteBlock(writer, "subnet " + pair, area) && passed;
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
        return RefuseMisplaced(parent);
    Host host(node.GetAttr("name"));
    host.Bind(writer.memory.LevelOf(host, *parent.LevelIn(writer.file)));
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
    const std::shared_ptr<Level> level = area.LevelIn(writer.file);
    for (const Node node : level->Nodes()) {
        for (Node child = node.FirstChild(); child; child = child.NextSibling())
            passed = WriteElement(writer, area, child) && passed;
    }
    return passed;
}

bool WriteHostBlock(TreeWriter& writer, Node node) {
    if (!node)
        return true;
    Host host(node.GetAttr("name"));
    host.Bind(std::make_shared<Level>(writer.file, std::vector<Node>{node}));
    return WriteReadableHost(writer, host, node);
}

bool GenerateDaemonSettings(TreeWriter& writer, std::FILE* out, const Area& area) {
    writer.out = out;
    writer.depth = 0;
    writer.daemon_form = true;
    const Node node = area.GetNode(writer.file);
    if (!node)
        return false;
    bool passed = true;
    if (node == writer.file.Root()) {
        if (!SelectIn(area, writer.file, "child::subnet"))
            return Refuse("DHCP server: no subnets are configured");
        if (!writer.memory.NetworkRecord().CheckRead())
            return false;
        passed = WriteDeclarations(writer, area);
    }
    passed = WriteTree(writer, area) && passed;
    if (out != nullptr && std::fflush(out) != 0)
        return RefuseWriting(writer);
    return passed;
}

} // namespace settings::dhcp_server
