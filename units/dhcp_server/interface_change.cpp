#include "units/dhcp_server/interface_change.h"

#include "platform/messages.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/common_conf_struct.h"
#include "units/dhcp_server/interface_rules.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/model/addresses.h"
#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/model/gates.h"
#include "units/dhcp_server/model/paths.h"

namespace settings::dhcp_server {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

constexpr const char* kUnchanged = "0.0.0.0";

CConfStruct ReadNetworkRecord() {
    return CConfStruct(path_list::local_settings, true);
}

// The option's text becomes `text` where the program manages the option.
bool UpdateAutoOption(const LocalSubnet& subnet, const File& file, const char* name,
                      const std::string& text) {
    Node option = FirstIn(subnet, file, "option[@name = '%s' and @auto = 'yes']", name);
    return !option || option.SetText(text);
}

// A list option that holds the interface's own address, as long as its service is enabled and the operator
// has not set it.
bool UpdateServiceOption(const LocalSubnet& subnet, const File& file, const char* name, bool enabled,
                         const std::string& address) {
    Node value = FirstIn(subnet, file, "option[@name = '%s']/address", name);
    if (value) {
        Node option = value.Parent();
        if (option.GetAttr("auto") != "yes")
            return true;
        return enabled ? value.SetText(address) : option.Remove();
    }
    if (!enabled)
        return true;
    Node option = FirstIn(subnet, file).AddChild("option");
    return option.NewAttr("name", "%s", name) && option.NewAttr("auto", "yes") &&
           option.AddChild("address", address);
}

bool UpdateServiceOptions(const LocalSubnet& subnet, const File& file, const std::string& address) {
    const corvanshell::CommonConfStruct common;
    if (!common.CheckRead())
        return false;
    const struct {
        const char* name;
        bool enabled;
    } options[] = {
        {"routers", true},
        {"ntp-servers", common.GetFlag("NTP")},
        {"domain-name-servers", common.GetFlag("DNS")},
    };
    for (const auto& option : options) {
        if (!UpdateServiceOption(subnet, file, option.name, option.enabled, address))
            return false;
    }
    return true;
}

// The network of an interface's address, or the address itself where the pair makes none.
std::string NetworkOf(const InterfaceEntry& entry, const std::string& interface) {
    const std::int64_t address = ParseAddress(entry.address, interface, "interface address");
    const std::int64_t mask = ParseAddress(entry.netmask, interface, "interface netmask");
    return address != kNoAddress && mask != kNoAddress ? FormatAddress(address & mask) : entry.address;
}

// The new address and mask against the subnet's settings.
bool CheckNewAddress(File& file, const LocalSubnet& subnet, const std::string& address,
                     const std::string& netmask) {
    return file.Load() &&
           CheckDynamicRangeUse(subnet, subnet.LevelIn(file)->Subnet()->Ranges(), false, "interface address",
                                address) &&
           (netmask == kUnchanged || CheckSubnetMaskScope(subnet, file, netmask));
}

bool MayGoDown(const std::string& interface, bool autostart) {
    if (autostart)
        return Refuse("DHCP server: interface %s can not go DOWN since DHCP server autostart is on",
                      interface);
    PrintWarning("DHCP server: interface %s going DOWN but it is present in DHCP server configuration",
                 interface);
    return true;
}

bool MaySetClass(const std::string& interface, const std::string& new_class, bool autostart) {
    if (autostart)
        return Refuse("DHCP server: interface %s can not set %s class since DHCP server autostart is on",
                      interface, new_class);
    PrintWarning("DHCP server: interface %s can set %s class but it is present in DHCP server configuration",
                 interface, new_class);
    return true;
}

} // namespace

bool UpdateListenInterface(const CConfStruct& record, File& file, const std::string& interface, bool strict) {
    const LocalSubnet subnet(interface);
    Node node = FirstIn(subnet, file);
    if (!node)
        return true;
    InterfaceEntry entry;
    if (!CheckServedInterface(record, interface, true, strict) || !record.FindInterface(interface, entry))
        return false;
    const std::string network = NetworkOf(entry, interface);
    const std::string broadcast = corvanshell::getbrcast(entry.address, entry.netmask);
    const bool updated = UpdateAutoOption(subnet, file, "subnet-mask", entry.netmask) &&
                         UpdateAutoOption(subnet, file, "broadcast-address", broadcast) &&
                         UpdateServiceOptions(subnet, file, entry.address) &&
                         FirstIn(subnet, file, "child::interface").SetAttr("address", entry.address) &&
                         node.SetAttr("address", network) && node.SetAttr("netmask", entry.netmask);
    return updated && file.Save();
}

bool UpdateListenInterface(File& file, const std::string& interface, bool strict) {
    // The record is not asked for an interface that is not the server's.
    return !SelectIn(LocalSubnet(interface), file) ||
           UpdateListenInterface(ReadNetworkRecord(), file, interface, strict);
}

void UpdateDhcpServerInterface(const CConfStruct& record, const std::string& interface, bool strict) {
    File file(kDhcpServerUnit, "");
    // The interface has its new address already; the failure is reported and changes nothing of that.
    static_cast<void>(file.Load() && UpdateListenInterface(record, file, interface, strict));
}

void UpdateDhcpServerInterface(const std::string& interface, bool strict) {
    UpdateDhcpServerInterface(ReadNetworkRecord(), interface, strict);
}

bool CheckDhcpServerInterfaceChange(const CConfStruct& record, const std::string& interface, bool going_down,
                                    const std::string& new_class, const std::string& new_address,
                                    const std::string& new_netmask) {
    if (interface.empty())
        return Refuse("DHCP server: listen interface is incorrect");
    const LocalSubnet subnet(interface);
    File file(kDhcpServerUnit, "");
    if (!file.Load() || !SelectIn(subnet, file))
        return true;
    if (IsDhcpServerRunning())
        return Refuse("DHCP server is running and the interface %s is in use", interface);
    const corvanshell::CommonConfStruct common;
    if (!common.CheckRead())
        return false;
    const bool autostart = common.GetFlag("DHCP_SERVER");
    LogInfo("DHCP server autostart is %s ", autostart ? "on" : "off");
    if (going_down)
        return MayGoDown(interface, autostart);
    if (new_class != "access")
        return MaySetClass(interface, new_class, autostart);
    if (!record.CheckRead())
        return false;
    if (!CheckInterfaceUsable(record, interface, kListenInterface, autostart))
        return !autostart;
    if (new_address == kUnchanged)
        return true;
    WarnIfNotPrivate(subnet, new_address, "interface address");
    if (CheckNewAddress(file, subnet, new_address, new_netmask))
        return true;
    if (!autostart)
        PrintWarning("DHCP server: above error(s) should be treated as warnings since DHCP server autostart "
                     "is off");
    return !autostart;
}

bool CheckDhcpServerInterfaceChange(const std::string& interface, bool going_down,
                                    const std::string& new_class, const std::string& new_address,
                                    const std::string& new_netmask) {
    return CheckDhcpServerInterfaceChange(ReadNetworkRecord(), interface, going_down, new_class, new_address,
                                          new_netmask);
}

} // namespace settings::dhcp_server
