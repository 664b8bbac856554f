#include "commands/interfaces/roles.h"

#include "platform/console.h"
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
    InterfaceEntry entry;
    if (!CConfStruct(path_list::local_settings, true).FindInterface(name, entry))
        return false;
    const char* const refusal = FindRefusal(name, entry, mask);
    if (refusal != nullptr && report)
        shell_print_error("%s: %s", name.c_str(), refusal);
    return refusal != nullptr;
}

bool CheckSlaveClass(const std::string& name, const InterfaceEntry& entry) {
    if (entry.interface_class == corvanshell::kSlaveClass)
        return true;
    shell_print_error("%s: class of the interface is not slave", name.c_str());
    return false;
}

const char* MasterText(const InterfaceEntry& entry) {
    return entry.master.empty() ? "not defined" : entry.master.c_str();
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
