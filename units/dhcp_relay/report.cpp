#include "units/dhcp_relay/report.h"

#include "front/reports/report.h"
#include "platform/messages.h"
#include "records/common_conf_struct.h"
#include "units/dhcp_relay/rules/lookup.h"

#include <cstdio>

namespace settings::dhcp_relay {
namespace {

constexpr const char* kNoValue = "NA";

struct ServerLabels {
    const char* server_id;
    const char* interface;
    const char* server;
};

constexpr ServerLabels kServerLabels[] = {
    {kExternalServer, "External DHCP server interface", "External DHCP server"},
    {kBackupServer, "Backup DHCP server interface", "Backup DHCP server"},
};

void PrintValue(std::FILE* out, const char* label, const std::string& value) {
    std::fprintf(out, "%s %s\n", label, value.empty() ? kNoValue : value.c_str());
}

void PrintRelay(const File& file, std::FILE* out, Node relay) {
    const std::string id = relay.GetAttr("id");
    std::fprintf(out, "\nDHCP relay %s is %s\n", id.c_str(), IsDhcpRelayRunning(id) ? "started" : "stopped");
    for (const ServerLabels& labels : kServerLabels) {
        const Node server =
            file.SelectFrom(relay, "server[@id = '%s' and @interface and text()]", labels.server_id).At(0);
        PrintValue(out, labels.interface, server.GetAttr("interface"));
        PrintValue(out, labels.server, server.GetText());
    }
    const NodeSet interfaces = file.SelectFrom(relay, "interface[@type = 'listen' and text()]");
    std::fprintf(out, "Internal listen interfaces");
    for (std::size_t i = 0; i < interfaces.Size(); ++i)
        std::fprintf(out, " %s", interfaces.At(i).GetText().c_str());
    if (interfaces.IsEmpty())
        std::fprintf(out, " %s", kNoValue);
    std::fprintf(out, "\n");
}

bool WriteReport(Report& report, const std::string& id) {
    File file(kDhcpRelayUnit, "");
    if (!file.Load())
        return false;
    if (!id.empty() && !FindRelay(file, id))
        return Refuse("DHCP relay %s: does not exist", id);
    const corvanshell::CommonConfStruct common;
    if (!common.CheckRead() || !report.Open())
        return false;
    std::fprintf(report.Out(), "DHCP relays autostart is %s\n", common.GetFlag("DHCP_RELAY") ? "on" : "off");
    const NodeSet relays = file.Select("/unit/dhcp-relay[@id]");
    for (std::size_t i = 0; i < relays.Size(); ++i) {
        if (id.empty() || relays.At(i).GetAttr("id") == id)
            PrintRelay(file, report.Out(), relays.At(i));
    }
    return report.Sync();
}

} // namespace

bool PrintDhcpRelays(const std::string& id) {
    lock_tool::FileLock lock(kSettingsLock);
    Report report("DHCP relay", kDhcpRelayUnit);
    return LockForReading(lock) && WriteReport(report, id) && ShowFile(lock, report.Path());
}

bool DumpRelaySettings() {
    lock_tool::FileLock lock(kSettingsLock);
    return LockForReading(lock) && ShowFile(lock, GetFilePath(kDhcpRelayUnit));
}

} // namespace settings::dhcp_relay
