#include "commands/failover/edit.h"

#include "commands/failover/addresses.h"
#include "commands/failover/backups.h"
#include "commands/failover/edit_signals.h"
#include "commands/failover/line_changes.h"
#include "platform/guards.h"
#include "platform/locks.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "records/cluster_edit.h"
#include "records/conf_struct.h"

#include <cerrno>
#include <cstring>

namespace failover {
namespace {

constexpr const char* kEditor = "/usr/bin/rnano";

enum class Outcome { kUnchanged, kChanged, kFailed };

bool Read(const std::string& path, Lines& lines) {
    return ReadLines(path, lines) || Refuse(Tr("%s: failed to open file: %s"), path, std::strerror(errno));
}

// The editor's exit status. That there is none is told.
int OpenEditor() {
    const int status = shell_spawn(kEditor, "-w", path_list::failover_settings.c_str(), nullptr);
    if (status == kNotStarted)
        PrintError(Tr("failed to run %s"), kEditor);
    return status;
}

// Has the file edited until it is valid or given up. `record` is from before the edit.
Outcome RunEditor(const Backups& backups, const corvanshell::CConfStruct& record, Lines& changes) {
    for (;;) {
        const int status = OpenEditor();
        Lines before;
        Lines after;
        if (EditSignals::HaveCome() || !Read(backups.TextFile(), before) ||
            !Read(path_list::failover_settings, after))
            return Outcome::kFailed;
        changes = FindChanges(before, after);
        if (changes.empty())
            return status == 0 ? Outcome::kUnchanged : Outcome::kFailed;
        if (!record.IsWhole()) // the file may not have matched its guard before, and the edit gives it one
            PrintWarning(Tr("failed to read network settings, the addresses are not compared with them"));
        if (ValidateFailoverAddresses(record))
            return EditSignals::HaveCome() ? Outcome::kFailed : Outcome::kChanged;
        if (EditSignals::HaveCome() ||
            shell_get_user_confirmation(
                "%s", gettext("Do you want to fix this? If not then failover.ini will not change.")) == 0)
            return Outcome::kUnchanged;
    }
}

// The old text comes back even when no line differs: an editor may have added or taken a last newline, and
// the guard knows of each byte.
bool GiveUp(const Backups& backups) {
    const bool restored = backups.Restore();
    if (restored)
        PrintInfo(Tr("The file failover.ini is not changed"));
    return restored;
}

// The backups stay when the new text gets no guard. A reader who finds a mismatch looks once more with the
// lock, so it is held here.
bool Accept(const Backups& backups, const Lines& changes) {
    PrintInfo(Tr("The file failover.ini is changed"));
    for (const std::string& line : changes)
        LogInfo("%s", line);
    const std::string guard = path_list::failover_settings + ".crg";
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!lock.AcquireExclusive(settings_lock_timeout, true) ||
        !corvanshell::UpdateGuardFile(guard.c_str(), corvanshell::kGuardOfOneFile,
                                      path_list::failover_settings.c_str(), nullptr))
        return Refuse(
            Tr("Failed to save the checksum for file failover.ini. Your files may appear corrupt."));
    PrintInfo(Tr("Changes will be applied after restart of failover daemon"));
    backups.Remove();
    return true;
}

bool EditGuarded() {
    const EditSignals signals;
    const Backups backups;
    if (!backups.Make())
        return false;
    // Behind the editor it can't be read: the file does not match its guard.
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    Lines changes;
    const Outcome outcome = RunEditor(backups, record, changes);
    if (outcome == Outcome::kChanged)
        return Accept(backups, changes);
    return GiveUp(backups) && outcome != Outcome::kFailed && !EditSignals::HaveCome();
}

} // namespace

bool EditConfig() {
    LogInfo("command failover config edit");
    lock_tool::FileLock lock(corvanshell::kClusterEditLock);
    if (lock.AcquireExclusive(0, false))
        return EditGuarded();
    return errno == EWOULDBLOCK
               ? Refuse(Tr("%s is being edited already"), path_list::failover_settings)
               : Refuse(Tr("%s can't be locked: %s"), corvanshell::kClusterEditLock, std::strerror(errno));
}

} // namespace failover
