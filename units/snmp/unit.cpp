#include "units/snmp/unit.h"

#include "front/unit_query.h"
#include "platform/console.h"
#include "platform/locks.h"
#include "platform/log.h"
#include "platform/path_list.h"
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
    if (!lock.AcquireShared(settings_lock_timeout, true)) {
        shell_print_error("settings file is locked by another process, please try later");
        return false;
    }
    const QueryList query = ParseUnitQuery(uri);
    return query.empty() ? snmp::WriteDaemonFiles() : RunQuery(query.front());
}
