#include "commands/failover/services.h"

#include "platform/log.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "records/common_conf_struct.h"
#include "records/conf_struct.h"
#include "records/service_permissions.h"

#include <algorithm>
#include <iterator>

namespace failover {
namespace {

constexpr const char* kScriptFolder = "/etc/init.d/";

// The script below /etc/init.d of each service flag. The settings name services by what they do, and the
// system by the package that does it, so neither name follows from the other. Flags that only say how another
// service works have no script.
struct Service {
    const char* flag;
    const char* script;
};

constexpr Service kServices[] = {
    {"DHCP_RELAY", "isc-dhcp-relay"},
    {"DHCP_SERVER", "isc-dhcp-server"},
    {"DNS", "named"},
    {"HTTPPROXY", "http_proxy.sh"},
    {"L2TP", "xl2tpd"},
    {"NTP", "ntp"},
    {"PPP_SERVER", "pppd-server"},
    {"SMTP_MODE", "postfix"},
    {"UPS_MONITOR", "nut-client"},
    {"WIFI", "hostapd"},
};

void Run(const std::string& name, const char* action) {
    const auto* const service = std::find_if(std::begin(kServices), std::end(kServices),
                                             [&](const Service& row) { return name == row.flag; });
    if (service == std::end(kServices)) {
        slput(kLogInfo, "%s %s: no script", name.c_str(), action);
        return;
    }
    const int status = shell_spawn((std::string(kScriptFolder) + service->script).c_str(), action, nullptr);
    if (status == 0)
        slput(kLogInfo, "%s %s: OK", name.c_str(), action);
    else
        slput(kLogInfo, "%s %s: failed, exit status %d", name.c_str(), action, status);
}

} // namespace

std::set<std::string> ListForbiddenServices() {
    corvanshell::ServiceRestrictions restrictions;
    corvanshell::ReadRestrictions(restrictions);
    return restrictions.single_only;
}

bool ListEnabledServices(std::set<std::string>& enabled) {
    const corvanshell::CConfStruct local(path_list::local_settings, true);
    const corvanshell::CommonConfStruct common;
    if (!local.CheckRead() || !common.CheckRead())
        return false;
    enabled = ListForbiddenServices();
    std::erase_if(enabled, [&](const std::string& name) {
        return !local.GetFlag(name.c_str()) && !common.GetFlag(name.c_str());
    });
    return true;
}

void StartService(const std::string& name) {
    Run(name, "start");
}

void StopService(const std::string& name) {
    Run(name, "stop");
}

} // namespace failover
