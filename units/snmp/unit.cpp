#include "units/snmp/unit.h"

#include "front/query_table.h"
#include "front/reports/report.h"
#include "platform/locks.h"
#include "units/snmp/conversion.h"
#include "units/snmp/daemon_settings.h"

namespace {

constexpr const char* kSettingsLock = "/run/lock/snmp.lock";

constexpr QueryRow<> kQueries[] = {
    {"convert-daemon-settings", snmp::ConvertDaemonSettings},
};

bool RunFirst(const QueryList& query) {
    LogInfo("SNMP: query: %s", query.front().key);
    return RunQuery(kQueries, query.front(), Tr("SNMP: wrong query format"));
}

} // namespace

bool SnmpAgentUnit(const _xmlURI* uri) {
    lock_tool::FileLock lock(kSettingsLock);
    if (!LockForReading(lock))
        return false;
    const QueryList query = ParseUnitQuery(uri);
    return query.empty() ? snmp::WriteDaemonFiles() : RunFirst(query);
}
