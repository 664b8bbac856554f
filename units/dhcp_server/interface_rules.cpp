#include "units/dhcp_server/interface_rules.h"

#include "platform/console.h"
#include "platform/log.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/common_conf_struct.h"
#include "units/dhcp_relay/rules/lookup.h"
#include "units/dhcp_server/model/address_rules.h"
#include "units/dhcp_server/model/addresses.h"
#include "units/dhcp_server/model/area.h"
#include "units/dhcp_server/model/gates.h"
#include "units/dhcp_server/model/paths.h"

namespace settings::dhcp_server {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

constexpr const char* kListenInterface = "listen interface";
constexpr const char* kRelayInterface = "relay interface";
constexpr const char* kUnchanged = "0.0.0.0";

CConfStruct ReadNetworkRecord() {
    return CConfStruct(path_list::local_settings, true);
}

// Prints a fault as the error or the warning that it is. False, so that a check can end with it.
template <typename... Texts>
bool Report(bool strict, const char* format, Texts... texts) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
    if (strict)
        shell_print_error(format, texts...);
    else
        shell_print_warning(format, texts...);
#pragma GCC diagnostic pop
    return false;
}

bool CheckUsable(const CConfStruct& record, const std::string& interface, const char* label, bool strict) {
    const char* name = interface.c_str();
    InterfaceEntry entry;
    if (!record.FindInterface(interface, entry))
        return Report(strict, "DHCP server: %s: unconfigured %s is unsupported", name, label);
    if (entry.interface_class != "access")
        return Report(strict, "DHCP server: %s: %s mode of %s is unsupported", name,
                      entry.interface_class.c_str(), label);
    if (entry.address.empty() || entry.address == "dhcp")
        return Report(strict, "DHCP server: %s: %s without static IP address is unsupported", name, label);
    if (!entry.up)
        return Report(strict, "DHCP server: %s: %s is down", name, label);
    return true;
}

// The option's text becomes `text` where the program manages the option.
bool UpdateAutoOption(const LocalSubnet& subnet, const File& file, const char* name,
                      const std::string& text) {
    Node option = FirstIn(subnet, file, "option[@name = '%s' and @auto = 'yes']", name);
    return !option || option.SetText("%s", text.c_str());
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
        return enabled ? value.SetText("%s", address.c_str()) : option.Remove();
    }
    if (!enabled)
        return true;
    Node option = FirstIn(subnet, file).AddChild("option");
    return option.NewAttr("name", "%s", name) && option.NewAttr("auto", "yes") &&
           option.AddChild("address", "%s", address.c_str());
}

bool UpdateServiceOptions(const LocalSubnet& subnet, const File& file, const std::string& address) {
    const corvanshell::CommonConfStruct common;
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
           CheckDynamicRangeUse(subnet, ReadRanges(SelectIn(subnet, file, "range[@from and @to]")), false,
                                "interface address", address) &&
           (netmask == kUnchanged || CheckSubnetMaskScope(subnet, file, netmask));
}

} // namespace

bool CheckServedInterface(const CConfStruct& record, const std::string& interface, bool is_listen,
                          bool strict) {
    if (interface.empty()) {
        shell_print_error("DHCP server: listen interface is incorrect");
        return false;
    }
    const std::string relay = is_listen ? dhcp_relay::FindRelayByInterface(interface) : "";
    if (!relay.empty()) {
        shell_print_error("DHCP server: %s: %s is used by DHCP relay %s", interface.c_str(), kListenInterface,
                          relay.c_str());
        return false;
    }
    return CheckUsable(record, interface, is_listen ? kListenInterface : kRelayInterface, strict);
}

bool CheckServedInterface(const std::string& interface, bool is_listen, bool strict) {
    return CheckServedInterface(ReadNetworkRecord(), interface, is_listen, strict);
}

bool CheckInterfaceUsable(const std::string& interface, const char* label, bool strict) {
    return CheckUsable(ReadNetworkRecord(), interface, label, strict);
}

bool UpdateListenInterface(File& file, const std::string& interface, bool strict) {
    const LocalSubnet subnet(interface);
    Node node = FirstIn(subnet, file);
    if (!node)
        return true;
    const CConfStruct record = ReadNetworkRecord();
    if (!CheckServedInterface(record, interface, true, strict))
        return false;
    InterfaceEntry entry;
    if (!record.FindInterface(interface, entry))
        return false;
    const std::string network = NetworkOf(entry, interface);
    const std::string broadcast = corvanshell::getbrcast(entry.address, entry.netmask);
    const bool updated =
        UpdateAutoOption(subnet, file, "subnet-mask", entry.netmask) &&
        UpdateAutoOption(subnet, file, "broadcast-address", broadcast) &&
        UpdateServiceOptions(subnet, file, entry.address) &&
        FirstIn(subnet, file, "child::interface").SetAttr("address", "%s", entry.address.c_str()) &&
        node.SetAttr("address", "%s", network.c_str()) &&
        node.SetAttr("netmask", "%s", entry.netmask.c_str());
    return updated && file.Save();
}

void UpdateDhcpServerInterface(const std::string& interface, bool strict) {
    File file(kDhcpServerUnit, "");
    // The interface has its new address already; the failure is reported and changes nothing of that.
    static_cast<void>(file.Load() && UpdateListenInterface(file, interface, strict));
}

bool CheckDhcpServerInterfaceChange(const std::string& interface, bool going_down,
                                    const std::string& new_class, const std::string& new_address,
                                    const std::string& new_netmask) {
    const char* name = interface.c_str();
    if (interface.empty()) {
        shell_print_error("DHCP server: listen interface is incorrect");
        return false;
    }
    const LocalSubnet subnet(interface);
    File file(kDhcpServerUnit, "");
    if (!file.Load() || !SelectIn(subnet, file))
        return true;
    if (IsDhcpServerRunning()) {
        shell_print_error("DHCP server is running and the interface %s is in use", name);
        return false;
    }
    const bool autostart = corvanshell::CommonConfStruct().GetFlag("DHCP_SERVER");
    shell_log_info("DHCP server autostart is %s ", autostart ? "on" : "off");
    if (going_down) {
        if (autostart)
            shell_print_error("DHCP server: interface %s can not go DOWN since DHCP server autostart is on",
                              name);
        else
            shell_print_warning(
                "DHCP server: interface %s going DOWN but it is present in DHCP server configuration", name);
        return !autostart;
    }
    if (new_class != "access") {
        if (autostart)
            shell_print_error(
                "DHCP server: interface %s can not set %s class since DHCP server autostart is on", name,
                new_class.c_str());
        else
            shell_print_warning(
                "DHCP server: interface %s can set %s class but it is present in DHCP server configuration",
                name, new_class.c_str());
        return !autostart;
    }
    if (!CheckInterfaceUsable(interface, kListenInterface, autostart))
        return !autostart;
    if (new_address == kUnchanged)
        return true;
    WarnIfNotPrivate(subnet, new_address, "interface address");
    if (CheckNewAddress(file, subnet, new_address, new_netmask))
        return true;
    if (!autostart)
        shell_print_warning("DHCP server: above error(s) should be treated as warnings since DHCP server "
                            "autostart is off");
    return !autostart;
}

} // namespace settings::dhcp_server
