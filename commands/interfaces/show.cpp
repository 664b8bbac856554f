#include "commands/interfaces/show.h"

#include "commands/arguments/arguments.h"
#include "front/probes/adapters.h"
#include "front/reports/report.h"
#include "platform/messages.h"
#include "platform/network.h"
#include "platform/pager.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "records/conf_struct.h"
#include "records/network_crossing.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace interfaces {
namespace {

using corvanshell::CConfStruct;

constexpr const char* kSeparator = "----------\n";

// The client's text about the interface, "" when it says nothing of DHCP or of the link.
std::string InterfaceBlock(const std::string& name) {
    std::vector<std::string> lines;
    corvanshell::run(("/sbin/dhcpclient.sh ifconf " + name).c_str(), lines);
    std::string block;
    bool kept = false;
    for (const std::string& line : lines) {
        kept = kept || line.find("Configured by DHCP:") != std::string::npos ||
               line.find("Speed:") != std::string::npos;
        block += line + '\n';
    }
    return kept ? block : "";
}

std::string AllBlocks(const CConfStruct& record) {
    std::string text;
    for (const auto& [name, entry] : record.Interfaces()) {
        const std::string block = arguments::IsInterfaceName(name) ? InterfaceBlock(name) : "";
        if (!block.empty())
            text += (text.empty() ? "" : kSeparator) + block;
    }
    return text;
}

bool ShowReport(const std::string& path) {
    ShellPager pager;
    return (pager.open() != nullptr && pager.print_file(path)) ||
           Refuse("<SH_IF>: failed to access temporary file: %s", std::strerror(errno));
}

bool IsTarget(const std::string& text) {
    return arguments::IsAddress(text) || corvanshell::is_valid_domain_name(text, false, false);
}

// Why no host answers to the address, null when one may.
const char* FindPingRefusal(const CConfStruct& record, const std::string& target) {
    for (const auto& [name, entry] : record.Interfaces()) {
        for (const corvanshell::Network& network : NetworksOf(entry)) {
            if (target == network.broadcast)
                return "you can't ping broadcast";
            if (target == corvanshell::getnetwork(network.address, network.netmask))
                return "you can't ping network address";
        }
    }
    return nullptr;
}

// A host may well be called "dhcp", as the settings of an interface under DHCP say in the place of its
// broadcast.
bool CheckTarget(const std::string& target) {
    if (!arguments::IsAddress(target))
        return true;
    const CConfStruct record(path_list::local_settings, true);
    if (!record.CheckRead())
        return false;
    const char* const refusal = FindPingRefusal(record, target);
    return refusal == nullptr || Refuse("%s", refusal);
}

} // namespace

bool ShowInterfaces() {
    LogInfo("<SH_IF> Command: inet show interface");
    PrintInfo("Interfaces info collection is in progress...");
    const CConfStruct record(path_list::local_settings, true);
    if (!record.CheckRead())
        return false;
    Report report("<SH_IF>", "interfaces");
    if (!report.Open())
        return false;
    std::fputs(AllBlocks(record).c_str(), report.Out());
    if (!report.Sync() || !ShowReport(report.Path()))
        return false;
    PrintInfo("The current number of network interfaces on the system is %ld. The maximum limit of "
              "interfaces is %ld.",
              CountNetworkAdapters(), GetNetworkAdapterLimit());
    return true;
}

bool Ping(const std::string& target) {
    if (!arguments::Check({{target, IsTarget, "address or host name"}}) || !CheckTarget(target))
        return false;
    PrintInfo("Pinging %s , press Ctrl+C to stop", target);
    return shell_spawn("/bin/ping", target.c_str(), nullptr) == 0;
}

} // namespace interfaces
