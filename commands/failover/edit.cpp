#include "commands/failover/edit.h"

#include "commands/failover/addresses.h"
#include "commands/failover/backups.h"
#include "commands/failover/line_changes.h"
#include "platform/console.h"
#include "platform/guards.h"
#include "platform/log.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "records/conf_struct.h"

#include <cerrno>
#include <cstring>
#include <libintl.h>

namespace failover {
namespace {

constexpr const char* kEditor = "/usr/bin/rnano";

enum class Outcome { kUnchanged, kChanged, kFailed };

bool Read(const std::string& path, Lines& lines) {
    if (ReadLines(path, lines))
        return true;
    shell_print_error(gettext("%s: failed to open file: %s"), path.c_str(), std::strerror(errno));
    return false;
}

// Has the file edited until it is valid or given up. `record` is from before the edit.
Outcome RunEditor(const Backups& backups, const corvanshell::CConfStruct& record, Lines& changes) {
    for (;;) {
        (void)shell_spawn(kEditor, "-w", path_list::failover_settings.c_str(), nullptr);
        Lines before;
        Lines after;
        if (!Read(backups.TextFile(), before) || !Read(path_list::failover_settings, after))
            return Outcome::kFailed;
        changes = FindChanges(before, after);
        if (changes.empty())
            return Outcome::kUnchanged;
        if (!record.IsWhole()) // the file may not have matched its guard before, and the edit gives it one
            shell_print_warning("%s",
                                gettext("failed to read network settings, the addresses are not compared "
                                        "with them"));
        if (ValidateFailoverAddresses(record))
            return Outcome::kChanged;
        if (shell_get_user_confirmation(
                "%s", gettext("Do you want to fix this? If not then failover.ini will not change.")) == 0)
            return Outcome::kUnchanged;
    }
}

// The old text comes back even when no line differs: an editor may have added or taken a last newline, and
// the guard knows of each byte.
bool GiveUp(const Backups& backups) {
    const bool restored = backups.Restore();
    if (restored)
        shell_print_info("%s", gettext("The file failover.ini is not changed"));
    return restored;
}

// The backups stay when the new text gets no guard.
bool Accept(const Backups& backups, const Lines& changes) {
    shell_print_info("%s", gettext("The file failover.ini is changed"));
    for (const std::string& line : changes)
        shell_log_info("%s", line.c_str());
    const std::string guard = path_list::failover_settings + ".crg";
    if (!corvanshell::UpdateGuardFile(guard.c_str(), corvanshell::kGuardOfOneFile,
                                      path_list::failover_settings.c_str(), nullptr)) {
        shell_print_error("%s", gettext("Failed to save the checksum for file failover.ini. Your files may "
                                        "appear corrupt."));
        return false;
    }
    shell_print_info("%s", gettext("Changes will be applied after restart of failover daemon"));
    backups.Remove();
    return true;
}

} // namespace

bool EditConfig() {
    shell_log_info("command failover config edit");
    const Backups backups;
    if (!backups.Make())
        return false;
    // Behind the editor it can't be read: the file does not match its guard.
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    Lines changes;
    const Outcome outcome = RunEditor(backups, record, changes);
    if (outcome == Outcome::kChanged)
        return Accept(backups, changes);
    return GiveUp(backups) && outcome != Outcome::kFailed;
}

} // namespace failover
