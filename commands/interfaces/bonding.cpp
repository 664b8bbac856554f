#include "commands/interfaces/bonding.h"

#include "commands/arguments/arguments.h"
#include "commands/interfaces/bond_options.h"
#include "commands/interfaces/bonding_values.h"
#include "commands/interfaces/roles.h"
#include "commands/interfaces/slave_class.h"
#include "commands/interfaces/users.h"
#include "commands/l2overip/configuration.h"
#include "platform/messages.h"
#include "platform/processes.h"

#include <algorithm>
#include <set>

namespace interfaces {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

constexpr const char* kBondingScript = "/sbin/bonding.sh";
constexpr const char* kNoBond = "bond interface does not exist";

// The interface's name, from a number in the range of bonds; "" and reported for another.
std::string BondNameInRange(const std::string& number) {
    if (arguments::IsNumber(number) && std::stoul(number) <= kMaximumBondNumber)
        return BondName(std::to_string(std::stoul(number)));
    PrintError("%s: bond interface number is out of range 0 - %zu", BondName(number), kMaximumBondNumber);
    return "";
}

// The head of the commands on one bond.
bool OpenBond(InterfaceEdit& edit) {
    return IsNameUsable(edit.Name()) && edit.Load(kNoBond) &&
           (IsBond(edit.Name(), edit.entry) || Refuse("%s: is not bond interface", edit.Name()));
}

bool CheckSlaveCount(const std::string& bond, std::size_t count) {
    return count <= kMaximumSlaves ||
           Refuse("%s: maximum %zu slave interfaces per bonding is allowed", bond, kMaximumSlaves);
}

bool CheckLooseSlave(const CConfStruct& record, const std::string& name) {
    const InterfaceEntry entry = FindEntry(record, name);
    return CheckSlaveClass(name, entry) &&
           (entry.master.empty() ||
            Refuse("%s: interface already has bond master interface: %s", name, entry.master));
}

bool AreDifferent(const std::vector<std::string>& slaves) {
    std::set<std::string> seen;
    return std::all_of(slaves.begin(), slaves.end(), [&](const std::string& slave) {
        return seen.insert(slave).second || Refuse("%s: duplicate slave interface", slave);
    });
}

bool AreLooseSlaves(const CConfStruct& record, const std::vector<std::string>& slaves) {
    return std::all_of(slaves.begin(), slaves.end(),
                       [&](const std::string& slave) { return CheckLooseSlave(record, slave); });
}

bool MayAddBond(const InterfaceEdit& bond, const std::string& mode, const std::vector<std::string>& slaves) {
    if (bond.record.Interfaces().contains(bond.Name()))
        return Refuse("%s: bond interface already exists", bond.Name());
    if (!IsOneOf(SelectableBondingModes(), mode))
        return Refuse("%s: unknown bonding mode: %s", bond.Name(), mode);
    return HasRoomForAdapter(".") && CheckSlaveCount(bond.Name(), slaves.size()) && AreDifferent(slaves) &&
           AreLooseSlaves(bond.record, slaves);
}

bool MayDeleteBond(const InterfaceEdit& bond) {
    if (IsL2OverIpSwitchOn(bond.Name()))
        return Refuse("%s: interface is used for L2OverIP", bond.Name());
    return CheckDhcpServer(bond.record, bond.Name(), {}) ||
           Refuse("%s: interface is used for DHCP.", bond.Name());
}

InterfaceEntry MakeBond(const std::string& name, const std::string& mode) {
    InterfaceEntry bond = corvanshell::MakeInterfaceEntry();
    bond.master = name;
    bond.bonding_mode = mode;
    bond.bonding_miimon = "100";
    FillBondWords(bond);
    return bond;
}

void SetMaster(CConfStruct& record, const std::string& slave, const std::string& master) {
    InterfaceEntry entry = FindEntry(record, slave);
    entry.master = master;
    record.AddInterface(slave, entry, true);
}

} // namespace

bool AddBond(const std::string& number, const std::string& mode, const std::vector<std::string>& named) {
    std::vector<std::string> slaves = named;
    slaves.resize(std::max(slaves.size(), kMaximumSlaves));
    LogInfo("command: inet bonding add %s slaves %s %s %s", number, slaves[0], slaves[1], slaves[2]);
    std::erase(slaves, "");
    const std::string name = BondNameInRange(number);
    if (name.empty())
        return false;
    InterfaceEdit bond(name);
    if (!bond.record.CheckRead() || !MayAddBond(bond, mode, slaves))
        return false;
    for (const std::string& slave : slaves)
        SetMaster(bond.record, slave, name);
    bond.entry = MakeBond(name, mode);
    if (!bond.Save())
        return false;
    if (const int status = shell_spawn(kBondingScript, "populate", name.c_str(), nullptr); status != 0)
        return Refuse("%s: failed to add bond interface with error: %d", name, status);
    PrintInfo("New bond interface %s was created.", name);
    return true;
}

bool DeleteBond(const std::string& number) {
    LogInfo("command: inet bonding delete %s", number);
    const std::string name = BondNameInRange(number);
    if (name.empty())
        return false;
    InterfaceEdit bond(name);
    if (!bond.Load(kNoBond) || !MayDeleteBond(bond) ||
        !ClearInterfaceForBonding(bond.record, name, bond.entry))
        return false;
    for (const std::string& slave : ListSlaves(bond.record, name))
        SetMaster(bond.record, slave, "");
    bond.record.RemoveInterface(name);
    if (!WriteRecord(bond.record))
        return false;
    const int status = shell_spawn(kBondingScript, "delete", name.c_str(), "all", nullptr);
    return status == 0 || Refuse("%s: failed to delete bond interface with error: %d", name, status);
}

bool AddSlave(const std::string& name, const std::string& slave) {
    LogInfo("inet ifconfig %s bonding add %s", name, slave);
    InterfaceEdit bond(name);
    if (!OpenBond(bond) || !CheckLooseSlave(bond.record, slave) ||
        !CheckSlaveCount(name, ListSlaves(bond.record, name).size() + 1))
        return false;
    SetMaster(bond.record, slave, name);
    if (!bond.Save())
        return false;
    const int status = shell_spawn(kBondingScript, "add", name.c_str(), slave.c_str(), nullptr);
    return status == 0 || Refuse("%s: failed to add slave interface %s with error: %d", name, slave, status);
}

bool DeleteSlave(const std::string& name, const std::string& slave) {
    LogInfo("inet ifconfig %s bonding delete %s", name, slave);
    InterfaceEdit bond(name);
    if (!OpenBond(bond) || !CheckSlaveOf(name, slave, FindEntry(bond.record, slave), "slave"))
        return false;
    if (ListSlaves(bond.record, name).size() == kMinimumSlaves)
        return Refuse("%s: minimum %zu slave interfaces per bonding is allowed", name, kMinimumSlaves);
    SetMaster(bond.record, slave, "");
    if (bond.entry.bonding_primary == slave)
        bond.entry.bonding_primary.clear();
    if (!bond.Save())
        return false;
    const int status = shell_spawn(kBondingScript, "delete", name.c_str(), slave.c_str(), nullptr);
    return status == 0 ||
           Refuse("%s: failed to delete slave interface %s with error: %d", name, slave, status);
}

bool SetBondOption(const std::string& name, const std::string& option, const std::string& value) {
    LogInfo("command: inet ifconfig %s bonding %s %s", name, option, value);
    InterfaceEdit bond(name);
    if (!OpenBond(bond) || !SetOption(bond, option, value) || !bond.Save())
        return false;
    const int status =
        shell_spawn(kBondingScript, "set", name.c_str(), option.c_str(), value.c_str(), nullptr);
    return status == 0 || Refuse("%s: failed to set bonding option %s with error: %d", name, option, status);
}

} // namespace interfaces
