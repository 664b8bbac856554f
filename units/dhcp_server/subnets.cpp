#include "units/dhcp_server/subnets.h"

#include "platform/messages.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/common_conf_struct.h"
#include "records/conf_struct.h"
#include "units/dhcp_server/edit.h"
#include "units/dhcp_server/interface_rules.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/model/addresses.h"
#include "units/dhcp_server/model/options.h"
#include "units/dhcp_server/model/paths.h"
#include "units/dhcp_server/removal.h"
#include "units/dhcp_server/tree_writer.h"

#include <cstdio>

namespace settings::dhcp_server {
namespace {

constexpr std::size_t kMaximumListenInterfaces = 128;
constexpr std::size_t kMaximumRanges = 64;
constexpr const char* kRouter = "router";

bool CheckInterfaceFree(const LocalSubnet& subnet, const File& file) {
    const NodeSet used =
        file.Select("/unit/subnet[@address and @netmask]/interface[@type = 'listen' and text()]");
    if (used.Size() >= kMaximumListenInterfaces)
        return Refuse(
            "DHCP server: %s: failed to add interface due to maximum number of listen interfaces: %zu",
            subnet.Name(), kMaximumListenInterfaces);
    const Node known = FirstIn(subnet, file);
    return !known || Refuse("DHCP server: %s: interface is already in use within subnet %s/%s", subnet.Name(),
                            known.GetAttr("address"), known.GetAttr("netmask"));
}

// An option of the program's own, with its text or with the one address that it lists.
bool AddManagedOption(Node subnet, const char* name, const std::string& text) {
    return !AddOptionChild(subnet, name, text).NewAttr("auto", "yes").IsNull();
}

bool AddManagedList(Node subnet, const char* name, const std::string& address) {
    Node option = subnet.AddChild("option");
    return option.NewAttr("name", "%s", name) && option.NewAttr("auto", "yes") &&
           option.AddChild("address", address);
}

bool AddServices(Node subnet, const std::string& address) {
    const corvanshell::CommonConfStruct common;
    return common.CheckRead() && AddManagedList(subnet, "routers", address) &&
           (!common.GetFlag("NTP") || AddManagedList(subnet, "ntp-servers", address)) &&
           (!common.GetFlag("DNS") || AddManagedList(subnet, "domain-name-servers", address));
}

Node AddInterface(Node subnet, const std::string& interface, const char* type) {
    return subnet.AddChild("interface", interface).NewAttr("type", "%s", type);
}

// The subnet of an interface's own address, with the interface in it.
bool AddServedSubnet(const LocalSubnet& subnet, const File& file) {
    const std::string& interface = subnet.Name();
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    corvanshell::InterfaceEntry entry;
    if (!CheckServedInterface(record, interface, true, true) || !record.FindInterface(interface, entry))
        return false;
    const std::int64_t address = ParseAddress(entry.address, interface, "interface address");
    const std::int64_t mask = ParseAddress(entry.netmask, interface, "interface netmask");
    if (address == kNoAddress || mask == kNoAddress)
        return false;
    const Node node = CreateSubnet(subnet, file, FormatAddress(address & mask), entry.netmask);
    return node && AddInterface(node, interface, "listen").NewAttr("address", entry.address) &&
           AddServices(node, entry.address);
}

bool CheckApartFrom(const Area& area, const Range& old, const Range& added) {
    if (!HasBounds(area, old))
        return false;
    return old.from > old.to ? RefuseInvalid(area, old) : CheckApart(area, added, old);
}

bool CheckRouterOutside(const Area& area, const std::string& router, const Range& added) {
    const std::int64_t address = ParseAddress(router, area.Name(), kRouter);
    if (address == kNoAddress)
        return false;
    return address < added.from || address > added.to ||
           Refuse("DHCP server: %s: address %s of %s is in the dynamic address range [%s - %s]", area.Name(),
                  router, kRouter, added.from_text, added.to_text);
}

bool CheckNewRange(const Area& area, const File& file, const std::string& from, const std::string& to) {
    const NodeSet known = SelectIn(area, file, "range");
    if (known.Size() >= kMaximumRanges)
        return RefuseMore(area, kRangeLabel, kMaximumRanges);
    if (!CheckRange(area, file, from, to))
        return false;
    const Range added = MakeRange(from, to);
    for (const Range& old : ReadRanges(known)) {
        if (!CheckApartFrom(area, old, added))
            return false;
    }
    const NodeSet routers = SelectIn(area, file, "option [@name = 'routers']/address[text()]");
    for (std::size_t i = 0; i < routers.Size(); ++i) {
        if (!CheckRouterOutside(area, routers.At(i).GetText(), added))
            return false;
    }
    return true;
}

// The daemon would refuse all settings for the empty broadcast address of a malformed pair.
bool CheckPair(const Area& area, const std::string& address, const std::string& netmask) {
    if (!corvanshell::getbrcast(address, netmask).empty())
        return true;
    return ParseAddress(address, area.Name(), "subnet address") != kNoAddress &&
           Refuse("DHCP server: %s: incorrect address format of subnet netmask: %s", area.Name(), netmask);
}

// Shows the subnet, asks, and removes it.
bool Remove(const Subnet& subnet, const File& file) {
    Node node = subnet.GetNode(file);
    if (!node)
        return false;
    TreeWriter writer(file, stdout);
    return WriteTree(writer, subnet) &&
           ConfirmRemoval("Subnet with these settings will be removed completely, are you sure?") &&
           node.Remove();
}

} // namespace

Node CreateSubnet(const Area& area, const File& file, const std::string& address,
                  const std::string& netmask) {
    if (SelectIn(area, file)) {
        PrintError("DHCP server: %s: subnet already exists", area.Name());
        return {};
    }
    if (!CheckPair(area, address, netmask))
        return {};
    WarnIfNotPrivate(area, address, "subnet address");
    Node subnet = file.Root().AddChild("subnet");
    const bool made = subnet.NewAttr("address", address) && subnet.NewAttr("netmask", netmask) &&
                      AddManagedOption(subnet, "subnet-mask", netmask) &&
                      AddManagedOption(subnet, "broadcast-address", corvanshell::getbrcast(address, netmask));
    if (!made)
        subnet.Remove();
    return subnet;
}

bool AddListenInterface(const LocalSubnet& subnet) {
    return EditUnit(
        [&](File& file) { return CheckInterfaceFree(subnet, file) && AddServedSubnet(subnet, file); });
}

bool AddRelayInterface(const RemoteSubnet& subnet, const std::string& interface) {
    return EditUnit([&](File& file) {
        if (!SelectIn(LocalSubnet(interface), file))
            return RefuseRelay(subnet);
        const Node node = CreateSubnet(subnet, file, subnet.Address(), subnet.Netmask());
        return node && AddInterface(node, interface, "relay");
    });
}

bool EraseSubnet(const Subnet& subnet) {
    return EditUnit([&](File& file) { return Remove(subnet, file); });
}

bool EraseLocalSubnet(const LocalSubnet& subnet) {
    return EditUnit([&](File& file) {
        if (IsLiteral(subnet.Name()) &&
            file.Select("/unit/subnet/interface[@type = 'relay' and text() = '%s']", subnet.Name()))
            return Refuse(
                "DHCP server: %s: failed to erase subnet due to existence of associated remote subnets",
                subnet.Name());
        return Remove(subnet, file);
    });
}

bool EraseRemoteSubnet(const RemoteSubnet& subnet, const std::string& interface) {
    return EditUnit([&](File& file) {
        if (!SelectText(subnet, file, "interface[@type = 'relay' and text() = '", interface))
            return Refuse("DHCP server: %s: no such remote subnet with relay interface: %s", subnet.Name(),
                          interface);
        return Remove(subnet, file);
    });
}

bool AddRange(const Subnet& subnet, const std::string& from, const std::string& to) {
    return EditArea(subnet, [&](File& file, Node node) {
        if (!CheckNewRange(subnet, file, from, to))
            return false;
        WarnIfNotPrivate(subnet, from, "lower bound of the range");
        WarnIfNotPrivate(subnet, to, "upper bound of the range");
        return !node.AddChild("range").NewAttr("from", from).NewAttr("to", to).IsNull();
    });
}

bool RemoveRange(const Subnet& subnet, const std::string& from, const std::string& to) {
    return EditArea(subnet, [&](File& file, Node /*node*/) {
        Node range;
        if (IsLiteral(from))
            range = SelectText(subnet, file, "range[@from = '" + from + "' and @to = '", to).At(0);
        if (!range)
            return Refuse("DHCP server: %s: %s [%s - %s] is not in use", subnet.Name(), kRangeLabel, from,
                          to);
        return range.Remove();
    });
}

bool CheckDhcpServerSettings() {
    File file(kDhcpServerUnit, "");
    TreeWriter writer(file);
    return file.Load() && GenerateDaemonSettings(writer, nullptr, Area());
}

} // namespace settings::dhcp_server
