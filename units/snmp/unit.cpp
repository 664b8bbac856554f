#include "units/snmp/unit.h"

#include "front/reports/report.h"
#include "front/unit_query.h"
#include "platform/console.h"
#include "platform/locks.h"
#include "platform/log.h"
#include "units/snmp/conversion.h"
#include "units/snmp/daemon_settings.h"

#include <libintl.h>

namespace {

constexpr const char* kSettingsLock = "/run/lock/snmp.lock";
constexpr const char* kConvertQuery = "convert-daemon-settings";

bool RunQuery(const QueryPair& pair) {
    shell_log_info("SNMP: query: %s", pair.key.c_str());
    if (pair.key == kConvertQuery)
        return snmp::ConvertDaemonSettings(pair.value);
    shell_print_error("%s", gettext("SNMP: wrong query format"));
    return false;
}

} // namespace

bool SnmpAgentUnit(const _xmlURI* uri) {
    lock_tool::FileLock lock(kSettingsLock);
    if (!LockForReading(lock))
        return false;
    const QueryList query = ParseUnitQuery(uri);
    return query.empty() ? snmp::WriteDaemonFiles() : RunQuery(query.front());
}
