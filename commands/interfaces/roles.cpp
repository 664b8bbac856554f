#include "commands/interfaces/roles.h"

#include "commands/interfaces/command_frame.h"
#include "platform/messages.h"
#include "platform/path_list.h"

namespace interfaces {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

// Why the mask refuses the interface, null when it does not.
const char* FindRefusal(const std::string& name, const InterfaceEntry& entry, unsigned int mask) {
    if (entry.interface_class != corvanshell::kSlaveClass)
        return (mask & kRefuseBond) != 0 && IsBond(name, entry) ? "bond interface is not acceptable"
                                                                : nullptr;
    if ((mask & kRefuseSlave) == kRefuseSlave)
        return "slave interface is not acceptable";
    if ((mask & kRefuseBoundSlave) != 0 && !entry.master.empty())
        return "bound slave interface is not acceptable";
    if ((mask & kRefuseLooseSlave) != 0 && entry.master.empty())
        return "loose slave interface is not acceptable";
    return nullptr;
}

} // namespace

bool IsInterfaceRoleRefused(const std::string& name, unsigned int mask, bool report) {
    const CConfStruct record(path_list::local_settings, true);
    const bool readable = report ? record.CheckRead() : record.IsWhole();
    return !readable || IsInterfaceRoleRefused(record, name, mask, report);
}

bool IsInterfaceRoleRefused(const CConfStruct& record, const std::string& name, unsigned int mask,
                            bool report) {
    const char* const refusal = FindRefusal(name, FindEntry(record, name), mask);
    if (refusal != nullptr && report)
        PrintError("%s: %s", name, refusal);
    return refusal != nullptr;
}

InterfaceEntry FindEntry(const CConfStruct& record, const std::string& name) {
    InterfaceEntry entry;
    static_cast<void>(record.FindInterface(name, entry));
    return entry;
}

bool CheckSlaveClass(const std::string& name, const InterfaceEntry& entry) {
    return entry.interface_class == corvanshell::kSlaveClass ||
           Refuse("%s: class of the interface is not slave", name);
}

bool CheckSlaveOf(const std::string& bond, const std::string& name, const InterfaceEntry& entry,
                  const char* role) {
    return CheckSlaveClass(name, entry) &&
           (entry.master == bond || Refuse("%s: %s interface has unexpected bond master interface: %s", name,
                                           role, MasterText(entry)));
}

std::string MasterText(const InterfaceEntry& entry) {
    return entry.master.empty() ? "not defined" : entry.master;
}

std::vector<std::string> ListVlanChildren(const CConfStruct& record, const std::string& parent) {
    std::vector<std::string> children;
    for (const auto& [name, entry] : record.Interfaces()) {
        if (!entry.vlan.empty() && entry.parent == parent)
            children.push_back(name);
    }
    return children;
}

std::vector<std::string> ListSlaves(const CConfStruct& record, const std::string& bond) {
    std::vector<std::string> slaves;
    for (const auto& [name, entry] : record.Interfaces()) {
        if (entry.interface_class == corvanshell::kSlaveClass && entry.master == bond)
            slaves.push_back(name);
    }
    return slaves;
}

} // namespace interfaces
