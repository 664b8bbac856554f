#include "units/dhcp_relay/rules/interface_change.h"

#include "platform/console.h"
#include "platform/log.h"
#include "records/common_conf_struct.h"
#include "units/dhcp_relay/rules/lookup.h"

#include <algorithm>

namespace settings::dhcp_relay {
namespace {

// A relay that starts with the appliance forbids what otherwise is only warned of.
bool ForbidChange(const char* name, bool going_down, bool changing_address, const std::string& new_class) {
    if (going_down)
        shell_print_error("DHCP relay: interface %s cannot go DOWN since DHCP relay autostart is on", name);
    else if (changing_address)
        shell_print_error(
            "DHCP relay: interface %s cannot change IP address since DHCP relay autostart is on", name);
    else if (new_class != "access")
        shell_print_error("DHCP relay: interface %s cannot set %s class since DHCP relay autostart is on",
                          name, new_class.c_str());
    else
        return true;
    return false;
}

void WarnOfChange(const char* name, bool going_down, bool changing_address, const std::string& new_class) {
    if (going_down)
        shell_print_warning(
            "DHCP relay: interface %s going DOWN but it is present in DHCP relay configuration", name);
    else if (changing_address)
        shell_print_warning(
            "DHCP relay: interface %s changing IP address but it is present in DHCP relay configuration",
            name);
    else if (new_class != "access")
        shell_print_warning(
            "DHCP relay: interface %s can set %s class but it is present in DHCP relay configuration", name,
            new_class.c_str());
}

} // namespace

bool CheckRelayInterfaceChange(const std::string& interface, bool going_down, bool changing_address,
                               const std::string& new_class) {
    const char* name = interface.c_str();
    if (interface.empty()) {
        shell_print_error("DHCP relay: listen interface is incorrect");
        return false;
    }
    const std::vector<std::string> used = ListRelayInterfaces();
    if (!std::binary_search(used.begin(), used.end(), interface))
        return true;
    File file(kDhcpRelayUnit, "");
    if (!file.Load())
        return false;
    if (IsDhcpRelayRunning(FindRelayByInterface(file, interface))) {
        shell_print_error("DHCP relay is running and the interface %s is in use", name);
        return false;
    }
    const bool autostart = corvanshell::CommonConfStruct().GetFlag("DHCP_RELAY");
    shell_log_info("DHCP relay autostart is %s ", autostart ? "on" : "off");
    if (autostart)
        return ForbidChange(name, going_down, changing_address, new_class);
    WarnOfChange(name, going_down, changing_address, new_class);
    return true;
}

} // namespace settings::dhcp_relay
