#include "units/dhcp_server/subnets.h"

#include "platform/console.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/common_conf_struct.h"
#include "records/conf_struct.h"
#include "units/dhcp_server/edit.h"
#include "units/dhcp_server/interface_rules.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/model/addresses.h"
#include "units/dhcp_server/model/gates.h"
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
    if (used.Size() >= kMaximumListenInterfaces) {
        shell_print_error(
            "DHCP server: %s: failed to add interface due to maximum number of listen interfaces: %zu",
            subnet.Name().c_str(), kMaximumListenInterfaces);
        return false;
    }
    const Node known = FirstIn(subnet, file);
    if (known)
        shell_print_error("DHCP server: %s: interface is already in use within subnet %s/%s",
                          subnet.Name().c_str(), known.GetAttr("address").c_str(),
                          known.GetAttr("netmask").c_str());
    return !known;
}

// An option of the program's own, with its text or with the one address that it lists.
bool AddManagedOption(Node subnet, const char* name, const std::string& text) {
    return !AddOptionChild(subnet, name, text).NewAttr("auto", "yes").IsNull();
}

bool AddManagedList(Node subnet, const char* name, const std::string& address) {
    Node option = subnet.AddChild("option");
    return option.NewAttr("name", "%s", name) && option.NewAttr("auto", "yes") &&
           option.AddChild("address", "%s", address.c_str());
}

bool AddServices(Node subnet, const std::string& address) {
    const corvanshell::CommonConfStruct common;
    return AddManagedList(subnet, "routers", address) &&
           (!common.GetFlag("NTP") || AddManagedList(subnet, "ntp-servers", address)) &&
           (!common.GetFlag("DNS") || AddManagedList(subnet, "domain-name-servers", address));
}

Node AddInterface(Node subnet, const std::string& interface, const char* type) {
    return subnet.AddChild("interface", "%s", interface.c_str()).NewAttr("type", "%s", type);
}

// The subnet of an interface's own address, with the interface in it.
bool AddServedSubnet(const LocalSubnet& subnet, const File& file) {
    const std::string& interface = subnet.Name();
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    corvanshell::InterfaceEntry entry;
    if (!record.FindInterface(interface, entry))
        return false;
    const std::int64_t address = ParseAddress(entry.address, interface, "interface address");
    const std::int64_t mask = ParseAddress(entry.netmask, interface, "interface netmask");
    if (address == kNoAddress || mask == kNoAddress)
        return false;
    const Node node = CreateSubnet(subnet, file, FormatAddress(address & mask), entry.netmask);
    return node && AddInterface(node, interface, "listen").NewAttr("address", "%s", entry.address.c_str()) &&
           AddServices(node, entry.address);
}

void ReportNoListenInterface(const Area& area) {
    shell_print_error("DHCP server: %s: relay interface does not correspond to any listen interface",
                      area.Name().c_str());
}

bool CheckApartFrom(const Area& area, const Range& old, const Range& added) {
    if (!HasBounds(area, old))
        return false;
    if (old.from > old.to) {
        shell_print_error("DHCP server: %s: %s [%s - %s] is invalid", area.Name().c_str(), kRangeLabel,
                          old.from_text.c_str(), old.to_text.c_str());
        return false;
    }
    if (added.to < old.from || added.from > old.to)
        return true;
    shell_print_error("DHCP server: %s: %s [%s - %s] intersects with %s [%s - %s]", area.Name().c_str(),
                      kRangeLabel, added.from_text.c_str(), added.to_text.c_str(), kRangeLabel,
                      old.from_text.c_str(), old.to_text.c_str());
    return false;
}

bool CheckRouterOutside(const Area& area, const std::string& router, const Range& added) {
    const std::int64_t address = ParseAddress(router, area.Name(), kRouter);
    if (address == kNoAddress)
        return false;
    if (address < added.from || address > added.to)
        return true;
    shell_print_error("DHCP server: %s: address %s of %s is in the dynamic address range [%s - %s]",
                      area.Name().c_str(), router.c_str(), kRouter, added.from_text.c_str(),
                      added.to_text.c_str());
    return false;
}

bool CheckNewRange(const Area& area, const File& file, const std::string& from, const std::string& to) {
    const NodeSet known = SelectIn(area, file, "range");
    if (known.Size() >= kMaximumRanges)
        return ReportMaximum(area, kRangeLabel, kMaximumRanges);
    if (!CheckRange(area, file, from, to))
        return false;
    const Range added = {from, to, ParseAddressQuiet(from), ParseAddressQuiet(to)};
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

} // namespace

Node CreateSubnet(const Area& area, const File& file, const std::string& address,
                  const std::string& netmask) {
    if (SelectIn(area, file)) {
        shell_print_error("DHCP server: %s: subnet already exists", area.Name().c_str());
        return {};
    }
    // The daemon would refuse all settings for the empty broadcast address of a malformed pair.
    const std::string broadcast = corvanshell::getbrcast(address, netmask);
    if (broadcast.empty()) {
        if (ParseAddress(address, area.Name(), "subnet address") != kNoAddress)
            shell_print_error("DHCP server: %s: incorrect address format of subnet netmask: %s",
                              area.Name().c_str(), netmask.c_str());
        return {};
    }
    WarnIfNotPrivate(area, address, "subnet address");
    Node subnet = file.Root().AddChild("subnet");
    const bool made = subnet.NewAttr("address", "%s", address.c_str()) &&
                      subnet.NewAttr("netmask", "%s", netmask.c_str()) &&
                      AddManagedOption(subnet, "subnet-mask", netmask) &&
                      AddManagedOption(subnet, "broadcast-address", broadcast);
    if (!made)
        subnet.Remove();
    return subnet;
}

bool AddListenInterface(const LocalSubnet& subnet) {
    return EditUnit([&](File& file) {
        return CheckInterfaceFree(subnet, file) && CheckServedInterface(subnet.Name(), true, true) &&
               AddServedSubnet(subnet, file);
    });
}

bool AddRelayInterface(const RemoteSubnet& subnet, const std::string& interface) {
    return EditUnit([&](File& file) {
        if (!SelectIn(LocalSubnet(interface), file)) {
            ReportNoListenInterface(subnet);
            return false;
        }
        const Node node = CreateSubnet(subnet, file, subnet.Address(), subnet.Netmask());
        return node && AddInterface(node, interface, "relay");
    });
}

bool EraseSubnet(const Subnet& subnet) {
    return EditArea(subnet, [&](File& file, Node node) {
        TreeWriter writer(file, stdout, false);
        return WriteTree(writer, subnet) &&
               ConfirmRemoval("Subnet with these settings will be removed completely, are you sure?") &&
               node.Remove();
    });
}

bool EraseLocalSubnet(const LocalSubnet& subnet) {
    File file(kDhcpServerUnit, "");
    if (!OpenForChange(file))
        return false;
    if (IsLiteral(subnet.Name()) &&
        file.Select("/unit/subnet/interface[@type = 'relay' and text() = '%s']", subnet.Name().c_str())) {
        shell_print_error(
            "DHCP server: %s: failed to erase subnet due to existence of associated remote subnets",
            subnet.Name().c_str());
        return false;
    }
    return EraseSubnet(subnet);
}

bool EraseRemoteSubnet(const RemoteSubnet& subnet, const std::string& interface) {
    File file(kDhcpServerUnit, "");
    if (!OpenForChange(file))
        return false;
    if (!SelectText(subnet, file, "interface[@type = 'relay' and text() = '", interface)) {
        shell_print_error("DHCP server: %s: no such remote subnet with relay interface: %s",
                          subnet.Name().c_str(), interface.c_str());
        return false;
    }
    return EraseSubnet(subnet);
}

bool AddRange(const Subnet& subnet, const std::string& from, const std::string& to) {
    return EditArea(subnet, [&](File& file, Node node) {
        if (!CheckNewRange(subnet, file, from, to))
            return false;
        WarnIfNotPrivate(subnet, from, "lower bound of the range");
        WarnIfNotPrivate(subnet, to, "upper bound of the range");
        Node range = node.AddChild("range").NewAttr("from", "%s", from.c_str());
        return !range.NewAttr("to", "%s", to.c_str()).IsNull();
    });
}

bool RemoveRange(const Subnet& subnet, const std::string& from, const std::string& to) {
    return EditArea(subnet, [&](File& file, Node /*node*/) {
        Node range;
        if (IsLiteral(from))
            range = SelectText(subnet, file, "range[@from = '" + from + "' and @to = '", to).At(0);
        if (!range)
            shell_print_error("DHCP server: %s: %s [%s - %s] is not in use", subnet.Name().c_str(),
                              kRangeLabel, from.c_str(), to.c_str());
        return range && range.Remove();
    });
}

bool CheckDhcpServerSettings() {
    File file(kDhcpServerUnit, "");
    return file.Load() && GenerateDaemonSettings(file, nullptr, Area());
}

} // namespace settings::dhcp_server
