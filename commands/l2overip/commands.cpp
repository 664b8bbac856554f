#include "commands/l2overip/commands.h"

#include "commands/arguments/arguments.h"
#include "commands/l2overip/configuration.h"
#include "commands/l2overip/driver.h"
#include "commands/l2overip/outcome.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "records/conf_struct.h"

#include <algorithm>
#include <arpa/inet.h>
#include <functional>
#include <ifaddrs.h>
#include <memory>

namespace l2overip {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

constexpr const char* kSwitchMode = "switch";
constexpr const char* kPppPrefix = "ppp";
constexpr const char* kPager = "/sbin/textpager.sh";

struct Report {
    const char* word;    // of the script
    const char* heading; // of the log
};

constexpr Report kReports[] = {
    {"status", "status"},
    {"port-table", "port table"},
    {"mac-address-table", "virtual switch MAC address table"},
    {"mac-hash-stats", "MAC hash statistics"},
    {"clone-fabric-stats", "clone fabric statistics"},
    {"vswitch-stats", "virtual switch statistics"},
};

// Changes the configuration. Any other outcome than "OK" refuses the command.
using Change = std::function<Outcome(L2OverIpConfig& config)>;

// Opens the configuration, changes it and saves it. With `configure` the driver is started behind the saving.
bool Edit(const std::string& prefix, const Change& change, bool configure = false) {
    L2OverIpConfig config;
    if (!L2OverIpRead(config))
        return End(prefix, Failed());
    const Outcome changed = change(config);
    if (!changed.done)
        return End(prefix, changed);
    const bool done = L2OverIpWrite(config) && (!configure || L2OverIpScript("configure") == 0);
    return End(prefix, done ? Ok() : Failed());
}

bool Holds(const InterfaceEntry& entry, const std::string& address) {
    return entry.address == address || std::find(entry.alias_addresses.begin(), entry.alias_addresses.end(),
                                                 address) != entry.alias_addresses.end();
}

// The interface of the running system that has the address, "" when none has.
std::string FindLiveHolder(const std::string& address) {
    in_addr wanted{};
    ifaddrs* list = nullptr;
    if (inet_pton(AF_INET, address.c_str(), &wanted) != 1 || getifaddrs(&list) != 0)
        return "";
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(list, freeifaddrs);
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET)
            continue;
        if (reinterpret_cast<const sockaddr_in*>(entry->ifa_addr)->sin_addr.s_addr == wanted.s_addr) {
            const std::string label = entry->ifa_name; // an alias is "eth1:0"
            return label.substr(0, label.find(':'));
        }
    }
    return "";
}

// Addresses learned by DHCP and those of ppp interfaces stand in no record.
std::string FindHolder(const CConfStruct& record, const std::string& address) {
    for (const auto& [name, entry] : record.Interfaces()) {
        if (Holds(entry, address))
            return name;
    }
    return FindLiveHolder(address);
}

Outcome CheckLocalAddress(const L2OverIpConfig& config, const std::string& address) {
    const CConfStruct record(path_list::local_settings, true);
    if (!record.CheckRead()) // it would say nothing of the interfaces
        return Failed();
    const std::string holder = FindHolder(record, address);
    if (holder.empty())
        return Refused(Tr(": specified address is not assigned to a local interface"));
    if (holder.starts_with(kPppPrefix))
        return Refused(Tr(": specified address is assigned to the ppp interface"));
    if (config.device.empty())
        return Refused(Tr(": internal interface is not set"));
    if (holder == config.device)
        return Refused(Tr(": specified address is assigned to the internal interface"));
    InterfaceEntry entry;
    if (!record.FindInterface(holder, entry))
        return Ok();
    if (entry.parent == config.device)
        return Refused(
            Tr(": specified address is assigned to the child VLAN interface of the internal interface"));
    if (IsDhcpConfigured(entry))
        return Refused(Tr(": specified address is assigned to the DHCP interface"));
    return Ok();
}

Outcome SetLocal(L2OverIpConfig& config, unsigned long number, const std::string& address) {
    Outcome checked = CheckLocalAddress(config, address);
    if (!checked.done)
        return checked;
    for (const auto& [remote_number, remote_address] : config.remote_ports) {
        if (remote_number == number)
            return Refused(Tr(": this num is already assigned to remote port"));
        if (remote_address == address)
            return Refused(Tr(": this IP is already assigned to remote port "));
    }
    if (IsBroadcastLike(address))
        return Refused(Tr(": Local port address can not be broadcast"));
    config.local_num = std::to_string(number);
    config.local_ip = address;
    return Ok();
}

Outcome SetRemote(L2OverIpConfig& config, unsigned long number, const std::string& address) {
    if (std::to_string(number) == config.local_num)
        return Refused(Tr(": this port num is already set to local port"));
    if (address == config.local_ip)
        return Refused(Tr(": this address is already set to local port"));
    if (IsBroadcastLike(address))
        return Refused(Tr(": Remote port address can not be broadcast"));
    for (const auto& [remote_number, remote_address] : config.remote_ports) {
        if (remote_address == address)
            return Refused(Tr(": this remote port IP is already present in config"));
    }
    config.remote_ports[number] = address;
    return Ok();
}

Outcome DeleteRemote(L2OverIpConfig& config, unsigned long number, const std::string& prefix) {
    const bool known = config.remote_ports.contains(number);
    if (config.mode == kSwitchMode && known && config.remote_ports.size() == 1)
        return Refused(Tr(": cannot delete last remote port when L2OverIP is configured."));
    if (!known)
        return Refused(Tr(" - port not found."));
    if (shell_get_user_confirmation(
            gettext("Do you want to delete remote port number %lu from L2OverIP configuration?"), number) ==
        0) {
        PrintInfo(Tr("Command `remote port delete` terminated by user."));
        return {gettext("- terminated by user."), false, true};
    }
    Log(prefix, {gettext("- running."), true});
    config.remote_ports.erase(number);
    return Ok();
}

Outcome SetNewMode(L2OverIpConfig& config, const std::string& value) {
    if (config.mode == value)
        return Refused(Tr("This mode is already set."));
    config.mode = value;
    if (value != kSwitchMode)
        return Ok();
    if (!L2OverIpCheck(config))
        return Failed();
    const CConfStruct record(path_list::local_settings, true);
    if (!record.CheckRead())
        return Failed();
    InterfaceEntry entry;
    if (record.FindInterface(config.device, entry))
        return Ok();
    PrintError(Tr("%s: the interface does not exist; please set the valid device"), config.device);
    return Failed();
}

bool CheckPort(const std::string& number, const std::string& address) {
    return arguments::Check(
        {{number, arguments::IsNumber, "port number"}, {address, arguments::IsAddress, "address"}});
}

bool ShowConfig() {
    const bool done = shell_spawn(kPager, path_list::l2overip.c_str(), nullptr) == 0;
    return End(gettext("<L2OverIP> Command show config"), done ? Ok() : Failed());
}

} // namespace

bool Show(const std::string& what) {
    if (what == "config")
        return ShowConfig();
    for (const Report& report : kReports) {
        if (what != report.word)
            continue;
        const std::string prefix = std::string(gettext("<L2OverIP> Command show ")) + gettext(report.heading);
        if (!L2OverIpDriverConfigured())
            return End(prefix, NotConfigured());
        return End(prefix, L2OverIpScript("show " + what) == 0 ? Ok() : Failed());
    }
    return Refuse(Tr("%s: nothing to show"), what);
}

bool SetInterface(const std::string& device) {
    if (!arguments::Check({{device, arguments::IsInterfaceName, "interface"}}))
        return false;
    const char* const prefix = gettext("<L2OverIP> Command set interface: ");
    if (device.starts_with(kPppPrefix))
        return End(
            prefix,
            {device + gettext(" on the ppp interface, you can not assign an L2 packet interception"), false});
    return Edit(prefix, [&](L2OverIpConfig& config) {
        if (config.device == device)
            return Refused(Tr(" already set to "), device);
        config.device = device;
        return Ok();
    });
}

bool SetLocalPort(const std::string& number, const std::string& address) {
    return CheckPort(number, address) &&
           Edit(gettext("<L2OverIP> Command set local port"),
                [&](L2OverIpConfig& config) { return SetLocal(config, std::stoul(number), address); });
}

bool SetRemotePort(const std::string& number, const std::string& address) {
    return CheckPort(number, address) &&
           Edit(gettext("<L2OverIP> Command: set remote port"),
                [&](L2OverIpConfig& config) { return SetRemote(config, std::stoul(number), address); });
}

bool DeleteRemotePort(const std::string& number) {
    const char* const prefix = gettext("<L2OverIP> Command delete remote port ");
    return arguments::Check({{number, arguments::IsNumber, "port number"}}) &&
           Edit(prefix,
                [&](L2OverIpConfig& config) { return DeleteRemote(config, std::stoul(number), prefix); });
}

bool SetMacTtl(const std::string& value) {
    return arguments::Check({{value, arguments::IsNumber, "MAC TTL"}}) &&
           Edit(gettext("<L2OverIP> Command set MAC TTL"), [&](L2OverIpConfig& config) {
               config.mac_ttl = value;
               return Ok();
           });
}

bool SetUnsolicitedFrames(const std::string& value) {
    return arguments::Check({{value, arguments::IsName, "unsolicited frames mode"}}) &&
           Edit(gettext("<L2OverIP> Command set unsolicited frames"), [&](L2OverIpConfig& config) {
               if (config.unsolicited_frames == value)
                   return Refused(Tr(": this unsolicited frames mode is already set"));
               config.unsolicited_frames = value;
               return Ok();
           });
}

bool SetMode(const std::string& value) {
    if (!arguments::Check({{value, arguments::IsName, "mode"}}))
        return false;
    const std::string prefix = gettext("<L2OverIP> Command set mode <") + value + ">";
    if (GetClusterMode() == 1 && !IsClusterActive())
        return End(prefix, Refused(Tr(": Device is in passive mode, mode setting couldn't be done.")));
    return Edit(
        prefix, [&](L2OverIpConfig& config) { return SetNewMode(config, value); }, value == kSwitchMode);
}

} // namespace l2overip
