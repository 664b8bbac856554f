#include "units/dhcp_server/interface_rules.h"

#include "platform/messages.h"
#include "platform/path_list.h"
#include "units/dhcp_relay/rules/interface_index.h"
#include "units/dhcp_relay/rules/lookup.h"

namespace settings::dhcp_server {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

constexpr const char* kRelayInterface = "relay interface";

// Tells a fault as the error or the warning that it is.
template <class... Arguments>
[[nodiscard]] bool Report(bool strict, FormatFor<Arguments...> format, const Arguments&... arguments) {
    if (strict)
        return Refuse<Arguments...>(format, arguments...);
    PrintWarning<Arguments...>(format, arguments...);
    return false;
}

// `find_relay` gives the ID of the relay that uses an interface.
template <class FindRelay>
bool CheckServed(const CConfStruct& record, const FindRelay& find_relay, const std::string& interface,
                 bool is_listen, bool strict) {
    if (interface.empty())
        return Refuse("DHCP server: listen interface is incorrect");
    const std::string relay = is_listen ? find_relay(interface) : "";
    if (!relay.empty())
        return Refuse("DHCP server: %s: %s is used by DHCP relay %s", interface, kListenInterface, relay);
    return CheckInterfaceUsable(record, interface, is_listen ? kListenInterface : kRelayInterface, strict);
}

} // namespace

bool CheckInterfaceUsable(const CConfStruct& record, const std::string& interface, const char* label,
                          bool strict) {
    InterfaceEntry entry;
    if (!record.CheckRead())
        return false;
    if (!record.FindInterface(interface, entry))
        return Report(strict, "DHCP server: %s: unconfigured %s is unsupported", interface, label);
    if (entry.interface_class != "access")
        return Report(strict, "DHCP server: %s: %s mode of %s is unsupported", interface,
                      entry.interface_class, label);
    if (entry.address.empty() || entry.address == "dhcp")
        return Report(strict, "DHCP server: %s: %s without static IP address is unsupported", interface,
                      label);
    return entry.up || Report(strict, "DHCP server: %s: %s is down", interface, label);
}

bool CheckInterfaceUsable(const std::string& interface, const char* label, bool strict) {
    return CheckInterfaceUsable(CConfStruct(path_list::local_settings, true), interface, label, strict);
}

bool CheckServedInterface(const CConfStruct& record, const std::string& interface, bool is_listen,
                          bool strict) {
    return CheckServed(
        record, [](const std::string& name) { return dhcp_relay::FindRelayByInterface(name); }, interface,
        is_listen, strict);
}

bool CheckServedInterface(const CConfStruct& record, const dhcp_relay::InterfaceIndex& relays,
                          const std::string& interface, bool is_listen, bool strict) {
    return CheckServed(
        record, [&](const std::string& name) { return relays.Find(name); }, interface, is_listen, strict);
}

bool CheckServedInterface(const std::string& interface, bool is_listen, bool strict) {
    return CheckServedInterface(CConfStruct(path_list::local_settings, true), interface, is_listen, strict);
}

bool RefuseRelay(const Area& area) {
    return Refuse("DHCP server: %s: relay interface does not correspond to any listen interface",
                  area.Name());
}

} // namespace settings::dhcp_server
