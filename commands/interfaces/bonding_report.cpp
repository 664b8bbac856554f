#include "commands/interfaces/bonding_report.h"

#include "commands/interfaces/roles.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "records/bonding_modes.h"

#include <cstdio>
#include <iostream>

namespace interfaces {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;
using Lines = std::vector<std::string>;

constexpr std::size_t kNameWidth = 9;

// The name, or nothing, in the column of names.
std::string Column(const std::string& name) {
    std::string column = name;
    column.resize(std::max(column.size(), kNameWidth), ' ');
    return column + ' ';
}

void Add(Lines& lines, const char* label, const std::string& value) {
    lines.push_back(Column("") + label + ": " + value);
}

void AddBondOptions(Lines& lines, const InterfaceEntry& bond) {
    Add(lines, "mode", bond.bonding_mode);
    Add(lines, "miimon", bond.bonding_miimon);
    const corvanshell::BondingMode& permitted = corvanshell::FindBondingMode(bond.bonding_mode);
    if (permitted.ad_select)
        Add(lines, "ad-select", bond.bonding_ad_select);
    if (permitted.lacp_rate)
        Add(lines, "lacp-rate", bond.bonding_lacp_rate);
    if (permitted.xmit_hash_policy)
        Add(lines, "xmit-hash-policy", bond.bonding_xmit_hash_policy);
    if (permitted.primary)
        Add(lines, "primary", bond.bonding_primary.empty() ? "none" : bond.bonding_primary);
}

Lines BondInfo(const CConfStruct& record, const std::string& name, const InterfaceEntry& bond) {
    Lines lines = {"", Column(name) + "is a bond interface"};
    AddBondOptions(lines, bond);
    lines.push_back(Column("") + "slave interfaces:");
    for (const std::string& slave : ListSlaves(record, name)) {
        std::string padded = Column(slave);
        padded.pop_back();
        lines.push_back(Column("") + padded + ": " + (record.Interfaces().at(slave).up ? "up" : "down"));
    }
    return lines;
}

Lines SlaveInfo(const std::string& name, const InterfaceEntry& slave) {
    Lines lines = {"", Column(name) + "is a slave interface"};
    Add(lines, "bond master interface", MasterText(slave));
    return lines;
}

Lines Info(const CConfStruct& record, const std::string& name) {
    const InterfaceEntry entry = FindEntry(record, name);
    if (IsBond(name, entry))
        return BondInfo(record, name, entry);
    return entry.interface_class == corvanshell::kSlaveClass ? SlaveInfo(name, entry) : Lines();
}

// All bonds, which name their slaves, and the slaves of none.
Lines AllInfo(const CConfStruct& record) {
    Lines lines;
    for (const auto& [name, entry] : record.Interfaces()) {
        if (!IsBond(name, entry) && IsBond(entry.master, FindEntry(record, entry.master)))
            continue;
        const Lines info = Info(record, name);
        lines.insert(lines.end(), info.begin(), info.end());
    }
    return lines;
}

void WriteLines(const Lines& lines) {
    for (const std::string& line : lines)
        std::cout << line << '\n';
    std::cout.flush();
}

} // namespace

Lines BondingInfo(const std::string& name) {
    const CConfStruct record(path_list::local_settings, true);
    return record.CheckRead() ? Info(record, name) : Lines();
}

void PrintBondingInfo(const std::string& name) {
    WriteLines(BondingInfo(name));
}

bool ShowBonding(const std::string& name) {
    const CConfStruct record(path_list::local_settings, true);
    if (!record.CheckRead())
        return false;
    const Lines lines = name.empty() ? AllInfo(record) : Info(record, name);
    if (lines.empty() && !name.empty())
        return Refuse(Tr("%s: neither a bond nor a slave interface"), name);
    if (lines.empty())
        PrintInfo(Tr("There is no bond and no slave interface."));
    WriteLines(lines);
    return true;
}

} // namespace interfaces
