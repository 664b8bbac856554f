#include "units/dhcp_relay/rules/interface_change.h"

#include "platform/messages.h"
#include "records/common_conf_struct.h"
#include "units/dhcp_relay/rules/lookup.h"

#include <functional>

namespace settings::dhcp_relay {
namespace {

struct Change {
    const std::string& interface;
    bool going_down;
    bool changing_address;
    const std::string& new_class;
};

// A relay that starts with the appliance forbids what otherwise is only warned of.
bool ForbidChange(const Change& change) {
    if (change.going_down)
        return Refuse("DHCP relay: interface %s cannot go DOWN since DHCP relay autostart is on",
                      change.interface);
    if (change.changing_address)
        return Refuse("DHCP relay: interface %s cannot change IP address since DHCP relay autostart is on",
                      change.interface);
    return change.new_class == "access" ||
           Refuse("DHCP relay: interface %s cannot set %s class since DHCP relay autostart is on",
                  change.interface, change.new_class);
}

void WarnOfChange(const Change& change) {
    if (change.going_down)
        PrintWarning("DHCP relay: interface %s going DOWN but it is present in DHCP relay configuration",
                     change.interface);
    else if (change.changing_address)
        PrintWarning("DHCP relay: interface %s changing IP address but it is present in DHCP relay "
                     "configuration",
                     change.interface);
    else if (change.new_class != "access")
        PrintWarning("DHCP relay: interface %s can set %s class but it is present in DHCP relay "
                     "configuration",
                     change.interface, change.new_class);
}

bool JudgeChange(const corvanshell::CommonConfStruct& common, const Change& change) {
    if (!common.CheckRead())
        return false;
    const bool autostart = common.GetFlag("DHCP_RELAY");
    LogInfo("DHCP relay autostart is %s ", autostart ? "on" : "off");
    if (autostart)
        return ForbidChange(change);
    WarnOfChange(change);
    return true;
}

// An interface that no relay uses may be changed, and one of a running relay may not; else `judge` says.
bool CheckChange(const std::string& interface, const std::function<bool()>& judge) {
    if (interface.empty())
        return Refuse("DHCP relay: listen interface is incorrect");
    File file(kDhcpRelayUnit, "");
    if (!file.Load() || !IsRelayInterface(file, interface))
        return true;
    if (IsDhcpRelayRunning(FindRelayByInterface(file, interface)))
        return Refuse("DHCP relay is running and the interface %s is in use", interface);
    return judge();
}

} // namespace

bool CheckRelayInterfaceChange(const std::string& interface, bool going_down, bool changing_address,
                               const std::string& new_class) {
    return CheckChange(interface, [&] {
        return JudgeChange(corvanshell::CommonConfStruct(),
                           {interface, going_down, changing_address, new_class});
    });
}

bool CheckRelayInterfaceChange(const corvanshell::CommonConfStruct& common, const std::string& interface,
                               bool going_down, bool changing_address, const std::string& new_class) {
    return CheckChange(interface, [&] {
        return JudgeChange(common, {interface, going_down, changing_address, new_class});
    });
}

} // namespace settings::dhcp_relay
