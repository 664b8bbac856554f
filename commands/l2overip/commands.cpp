#include "commands/l2overip/commands.h"

#include "commands/arguments/arguments.h"
#include "commands/l2overip/configuration.h"
#include "commands/l2overip/driver.h"
#include "commands/l2overip/outcome.h"
#include "front/probes/cluster.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "records/conf_struct.h"

#include <algorithm>
#include <arpa/inet.h>
#include <functional>
#include <ifaddrs.h>
#include <libintl.h>
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

// Changes the configuration, or gives the outcome that refuses it. "" when it is changed.
using Change = std::function<std::string(L2OverIpConfig& config)>;

// The frame of every edit. With `configure` the driver is started behind the writing.
bool Edit(const std::string& prefix, const Change& change, bool configure = false) {
    L2OverIpConfig config;
    if (!L2OverIpRead(config))
        return End(prefix, Failed());
    const std::string refusal = change(config);
    if (!refusal.empty())
        return End(prefix, refusal);
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

std::string RefuseLocalAddress(const L2OverIpConfig& config, const std::string& address) {
    const CConfStruct record(path_list::local_settings, true);
    const std::string holder = FindHolder(record, address);
    if (holder.empty())
        return gettext(": specified address is not assigned to a local interface");
    if (holder.starts_with(kPppPrefix))
        return gettext(": specified address is assigned to the ppp interface");
    if (config.device.empty())
        return gettext(": internal interface is not set");
    if (holder == config.device)
        return gettext(": specified address is assigned to the internal interface");
    InterfaceEntry entry;
    if (!record.FindInterface(holder, entry))
        return "";
    if (entry.parent == config.device)
        return gettext(
            ": specified address is assigned to the child VLAN interface of the internal interface");
    if (IsDhcpConfigured(entry))
        return gettext(": specified address is assigned to the DHCP interface");
    return "";
}

std::string RefuseLocalPort(const L2OverIpConfig& config, unsigned long number, const std::string& address) {
    const std::string refusal = RefuseLocalAddress(config, address);
    if (!refusal.empty())
        return refusal;
    for (const auto& [remote_number, remote_address] : config.remote_ports) {
        if (remote_number == number)
            return gettext(": this num is already assigned to remote port");
        if (remote_address == address)
            return gettext(": this IP is already assigned to remote port ");
    }
    return IsBroadcastLike(address) ? gettext(": Local port address can not be broadcast") : "";
}

std::string RefuseRemotePort(const L2OverIpConfig& config, unsigned long number, const std::string& address) {
    if (std::to_string(number) == config.local_num)
        return gettext(": this port num is already set to local port");
    if (address == config.local_ip)
        return gettext(": this address is already set to local port");
    if (IsBroadcastLike(address))
        return gettext(": Remote port address can not be broadcast");
    for (const auto& [remote_number, remote_address] : config.remote_ports) {
        if (remote_address == address)
            return gettext(": this remote port IP is already present in config");
    }
    return "";
}

bool IsDeviceKnown(const std::string& device) {
    InterfaceEntry entry;
    if (CConfStruct(path_list::local_settings, true).FindInterface(device, entry))
        return true;
    shell_print_error(gettext("%s: the interface does not exist; please set the valid device"),
                      device.c_str());
    return false;
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
    shell_print_error(gettext("%s: nothing to show"), what.c_str());
    return false;
}

bool SetInterface(const std::string& device) {
    if (!arguments::Check({{device, arguments::IsInterfaceName, "interface"}}))
        return false;
    const char* const prefix = gettext("<L2OverIP> Command set interface: ");
    if (device.starts_with(kPppPrefix))
        return End(prefix,
                   device + gettext(" on the ppp interface, you can not assign an L2 packet interception"));
    return Edit(prefix, [&](L2OverIpConfig& config) -> std::string {
        if (config.device == device)
            return gettext(" already set to ") + device;
        config.device = device;
        return "";
    });
}

bool SetLocalPort(const std::string& number_text, const std::string& address) {
    if (!arguments::Check(
            {{number_text, arguments::IsNumber, "port number"}, {address, arguments::IsAddress, "address"}}))
        return false;
    const unsigned long number = std::stoul(number_text);
    return Edit(gettext("<L2OverIP> Command set local port"), [&](L2OverIpConfig& config) {
        const std::string refusal = RefuseLocalPort(config, number, address);
        if (refusal.empty()) {
            config.local_num = std::to_string(number);
            config.local_ip = address;
        }
        return refusal;
    });
}

bool SetRemotePort(const std::string& number_text, const std::string& address) {
    if (!arguments::Check(
            {{number_text, arguments::IsNumber, "port number"}, {address, arguments::IsAddress, "address"}}))
        return false;
    const unsigned long number = std::stoul(number_text);
    return Edit(gettext("<L2OverIP> Command: set remote port"), [&](L2OverIpConfig& config) {
        const std::string refusal = RefuseRemotePort(config, number, address);
        if (refusal.empty())
            config.remote_ports[number] = address;
        return refusal;
    });
}

bool DeleteRemotePort(const std::string& number_text) {
    if (!arguments::Check({{number_text, arguments::IsNumber, "port number"}}))
        return false;
    const unsigned long number = std::stoul(number_text);
    const char* const prefix = gettext("<L2OverIP> Command delete remote port ");
    L2OverIpConfig config;
    if (!L2OverIpRead(config))
        return End(prefix, Failed());
    const bool known = config.remote_ports.contains(number);
    if (config.mode == kSwitchMode && known && config.remote_ports.size() == 1)
        return End(prefix, gettext(": cannot delete last remote port when L2OverIP is configured."));
    if (!known)
        return End(prefix, gettext(" - port not found."));
    if (shell_get_user_confirmation(
            gettext("Do you want to delete remote port number %lu from L2OverIP configuration?"), number) ==
        0) {
        shell_print_info("%s", gettext("Command `remote port delete` terminated by user."));
        return Log(prefix, gettext("- terminated by user."), false);
    }
    Log(prefix, gettext("- running."), true);
    config.remote_ports.erase(number);
    return End(prefix, L2OverIpWrite(config) ? Ok() : Failed());
}

bool SetMacTtl(const std::string& value) {
    if (!arguments::Check({{value, arguments::IsNumber, "MAC TTL"}}))
        return false;
    return Edit(gettext("<L2OverIP> Command set MAC TTL"), [&](L2OverIpConfig& config) -> std::string {
        config.mac_ttl = value;
        return "";
    });
}

bool SetUnsolicitedFrames(const std::string& value) {
    if (!arguments::Check({{value, arguments::IsName, "unsolicited frames mode"}}))
        return false;
    return Edit(gettext("<L2OverIP> Command set unsolicited frames"),
                [&](L2OverIpConfig& config) -> std::string {
                    if (config.unsolicited_frames == value)
                        return gettext(": this unsolicited frames mode is already set");
                    config.unsolicited_frames = value;
                    return "";
                });
}

bool SetMode(const std::string& value) {
    if (!arguments::Check({{value, arguments::IsName, "mode"}}))
        return false;
    const std::string prefix = gettext("<L2OverIP> Command set mode <") + value + ">";
    if (GetClusterMode() == 1 && !IsClusterActive())
        return End(prefix, gettext(": Device is in passive mode, mode setting couldn't be done."));
    const bool on = value == kSwitchMode;
    const Change change = [&](L2OverIpConfig& config) -> std::string {
        if (config.mode == value)
            return gettext("This mode is already set.");
        config.mode = value;
        return on && !(L2OverIpCheck(config) && IsDeviceKnown(config.device)) ? Failed() : "";
    };
    return Edit(prefix, change, on);
}

} // namespace l2overip
