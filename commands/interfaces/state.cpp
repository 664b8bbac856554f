#include "commands/interfaces/state.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/command_frame.h"
#include "commands/interfaces/roles.h"
#include "commands/interfaces/users.h"
#include "platform/messages.h"
#include "platform/processes.h"
#include "records/address_checks.h"

#include <iostream>
#include <sys/wait.h>

namespace interfaces {
namespace {

using corvanshell::InterfaceEntry;

constexpr const char* kLogPrefix = "<IFCONF> ";

// The wanted state.
struct State {
    bool up;
    std::string word; // "up" or "down"
    std::string text; // the head of the log lines; its quote has no other
};

bool IsStateWord(const std::string& word) {
    return word == "up" || word == "down";
}

bool CheckUsers(const InterfaceEdit& edit, const State& state) {
    return state.up || FindRefusingUser(edit.record, edit.Name(), {.going_down = true}) == nullptr ||
           Refuse("<IFCONF>  Cannot execute: inet ifconfig %s %s", edit.Name(), state.word);
}

bool CheckAddresses(const InterfaceEdit& edit, const State& state) {
    return !state.up || CheckInterfaceUp(edit.record, edit.Name()) ||
           Refuse("<IFCONF>  Cannot bring the interface %s up, because it uses incorrect address, "
                  "subnetmask or broadcast.",
                  edit.Name());
}

// A VLAN child can't be up on a parent that is down.
bool CheckParent(const InterfaceEdit& edit, const State& state) {
    InterfaceEntry parent;
    if (!state.up || edit.entry.parent.empty() ||
        (edit.record.FindInterface(edit.entry.parent, parent) && parent.up))
        return true;
    WriteLine("Can not bring the interface " + edit.Name() + " up, because its trunk interface " +
              edit.entry.parent + " is down.");
    WriteLine("You have to bring the trunk interface up first.");
    return RefuseInLog("<IFCONF> Command: inet ifconfig %s %s - failed because trunk is down.", edit.Name(),
                       state.word);
}

bool ConfirmChildren(const InterfaceEdit& edit, const State& state) {
    if (edit.entry.interface_class != corvanshell::kTrunkClass ||
        ListVlanChildren(edit.record, edit.Name()).empty())
        return true;
    WriteLine(std::string("All child vlan interfaces on this interface to be ") +
              (state.up ? "turned on" : "turned off") + ".");
    if (shell_get_user_confirmation("Continue?") != 0)
        return true;
    WriteLine("Command terminated by user.");
    LogInfo("<IFCONF> Command: inet ifconfig %s %s - terminated by user.", edit.Name(), state.word);
    return false;
}

bool MayChange(const InterfaceEdit& edit, const State& state) {
    if (!CheckAddresses(edit, state))
        return false;
    if (edit.entry.up == state.up) {
        WriteLine("The interface " + edit.Name() + " is already " + state.word + ".");
        return false;
    }
    return CheckParent(edit, state) && ConfirmChildren(edit, state);
}

void SwitchDhcpClient(const std::string& name, const State& state) {
    const char* const action = state.up ? "start" : "stop";
    const int status = BaseExec::run(std::string("/sbin/dhcpclient.sh ") + action + " " + name);
    if (status == 0)
        return;
    WriteAndLog(std::cout, kLogPrefix,
                "The command 'inet ifconfig " + name + " " + state.word +
                    "' cannot be executed: the dhcpclient cannot be " + (state.up ? "started" : "stopped") +
                    " on the interface " + name);
    WriteErrorLine("Status " + std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : status));
}

// ifconfig(8) gives a VLAN child its address again: the kernel may have dropped it with the parent's link.
void RestoreAddress(const std::string& child, const InterfaceEntry& entry) {
    if (shell_spawn("/sbin/ifconfig", child.c_str(), entry.address.c_str(), "netmask", entry.netmask.c_str(),
                    "broadcast", entry.broadcast.c_str(), nullptr) == 0)
        return;
    WriteLine("Can not configure the interface " + child);
    LogError("<IFCONF>  Command: inet ifconfig: cannot configure interface %s", child);
}

// A child that does not follow keeps its settings, and does not stop its brothers.
bool BringChildrenAlong(InterfaceEdit& edit, const State& state) {
    for (const std::string& child : ListVlanChildren(edit.record, edit.Name())) {
        InterfaceEntry entry = edit.record.Interfaces().at(child);
        if (entry.up == state.up)
            continue;
        if (!RunLine("/sbin/ifconfig " + child + " " + state.word)) {
            WriteAndLog(std::cerr, kLogPrefix, state.text + " Cannot execute.");
            continue;
        }
        LogInfo("%s Executed.", state.text);
        entry.up = state.up;
        edit.record.AddInterface(child, entry, true);
        if (!WriteRecord(edit.record))
            return false;
        if (state.up && HasAddress(entry) && !IsDhcpConfigured(entry))
            RestoreAddress(child, entry);
    }
    return true;
}

} // namespace

bool SetState(const std::string& name, const std::string& word) {
    const State state = {word == "up", word, "Command inet ifconfig " + name + " " + word + "'"};
    InterfaceEdit edit(name);
    if (!IsNameUsable(name) || !arguments::Check({{word, IsStateWord, "state"}}) ||
        !edit.record.CheckRead() || !CheckUsers(edit, state) || !edit.Load() || !MayChange(edit, state))
        return false;
    if (!RunLine("/sbin/ifconfig " + name + " " + word))
        return WriteAndLog(std::cerr, kLogPrefix, state.text + " Cannot execute: ifconfig");
    edit.entry.up = state.up;
    if (!edit.Save())
        return false;
    UpdateDhcpServer(edit.record, name);
    if (IsDhcpConfigured(edit.entry))
        SwitchDhcpClient(name, state);
    if (state.up)
        BaseExec::run("/sbin/apply_new_routes.sh");
    if (shell_spawn("/sbin/if_postcmd.sh", name.c_str(), word.c_str(), nullptr) != 0)
        WriteAndLog(std::cout, kLogPrefix, "Cannot execute: post action for interface " + name);
    if (edit.entry.interface_class == corvanshell::kTrunkClass && !BringChildrenAlong(edit, state))
        return false;
    LogInfo("<IFCONF> %s Executed.", state.text);
    return true;
}

} // namespace interfaces
