#include "shell/snmp_view.h"

#include "platform/console.h"
#include "units/snmp/agent_settings.h"
#include "units/snmp/cluster_settings.h"
#include "units/snmp/communities.h"
#include "units/snmp/settings_access.h"
#include "units/snmp/trapsinks.h"
#include "units/snmp/users.h"

#include <string>

namespace shell {
namespace {

struct Row {
    const char* label;
    const snmp::Setting& setting;
};

constexpr Row kRows[] = {
    {"autostart", snmp::kAutostart},
    {"log level", snmp::kLogLevel},
    {"port", snmp::kPort},
    {"protocol", snmp::kProtocol},
    {"system name", snmp::kSysName},
    {"system contact", snmp::kSysContact},
    {"system location", snmp::kSysLocation},
    {"reading by SNMPv1 and SNMPv2c", snmp::kV2Mode},
    {"reading by SNMPv3", snmp::kV3Mode},
    {"traps by SNMPv1 and SNMPv2c", snmp::kV2Traps},
    {"traps by SNMPv3", snmp::kV3Traps},
};

std::string FormatUser(const snmp::UserEntry& entry) {
    const snmp::User& user = entry.user;
    std::string text = "user " + user.name + ": " + user.auth_type +
                       (user.encryption == "on" ? ", encrypted" : "") + (user.read == "on" ? ", reads" : "") +
                       (entry.sends_traps ? ", has traps" : "") + "\n";
    for (const snmp::Trapsess& receiver : entry.receivers)
        text += "    receiver " + receiver.type + " " + receiver.destination + " " + receiver.port + " " +
                receiver.prot + "\n";
    return text;
}

std::string FormatCluster(const snmp::ClusterSettings& cluster) {
    std::string text = std::string("cluster monitoring: ") + (cluster.v2_mode ? "on" : "off") + "\n";
    for (const snmp::ClusterNode& node : cluster.nodes)
        text +=
            "    node " + node.address + " context " + node.context + " community " + node.community + "\n";
    return text;
}

} // namespace

bool ShowSnmpSettings() {
    snmp::SettingsFile common(snmp::kCommonUnit);
    snmp::SettingsFile unique(snmp::kUniqueUnit);
    if (!snmp::LoadSettings(common) || !snmp::LoadSettings(unique))
        return false;
    std::string text;
    for (const Row& row : kRows) {
        const bool is_common = std::string(row.setting.unit) == snmp::kCommonUnit;
        text +=
            std::string(row.label) + ": " + snmp::GetSetting(is_common ? common : unique, row.setting) + "\n";
    }
    for (const std::string& name : snmp::ListCommunities(common))
        text += "community " + name + "\n";
    for (const snmp::Trapsink& sink : snmp::ListTrapsinks(common))
        text += "trap receiver " + sink.type + " " + sink.destination + " " + sink.port + " " + sink.prot +
                " community " + sink.community + "\n";
    for (const snmp::UserEntry& entry : snmp::ListUserEntries(common))
        text += FormatUser(entry);
    text += FormatCluster(snmp::ReadClusterSettings(common));
    shell_print_info("%s", text.c_str());
    return true;
}

} // namespace shell
