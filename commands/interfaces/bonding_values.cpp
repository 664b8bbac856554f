#include "commands/interfaces/bonding_values.h"

#include "platform/path_list.h"
#include "records/bonding_modes.h"
#include "records/conf_struct.h"

#include <algorithm>

namespace interfaces {
namespace {

WordList NamesOfSelectable() {
    WordList words;
    for (const corvanshell::BondingMode& mode : corvanshell::BondingModes()) {
        if (mode.selectable)
            words.emplace_back(mode.name);
    }
    return words;
}

} // namespace

const WordList& SelectableBondingModes() {
    static const WordList words = NamesOfSelectable();
    return words;
}

const WordList& BondingAdSelects() {
    static const WordList words = {"stable", "bandwidth", "count"};
    return words;
}

const WordList& BondingLacpRates() {
    static const WordList words = {"slow", "fast"};
    return words;
}

const WordList& BondingXmitHashPolicies() {
    static const WordList words = {"layer2", "layer2+3", "layer3+4"};
    return words;
}

bool IsOneOf(const WordList& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

std::string BondName(const std::string& number) {
    return "bond" + number;
}

} // namespace interfaces

namespace value {
namespace {

using corvanshell::CConfStruct;
using corvanshell::InterfaceEntry;

// The bond numbers whose bond is there, or is not. A record that was not read offers neither.
ShellWords ListBondIds(bool used) {
    const CConfStruct record(path_list::local_settings, true);
    ShellWords words;
    for (std::size_t number = 0; record.IsWhole() && number <= interfaces::kMaximumBondNumber; ++number) {
        const std::string word = std::to_string(number);
        if (record.Interfaces().contains(interfaces::BondName(word)) == used)
            words.push_back(word);
    }
    return words;
}

ShellWords ListSlaves(bool bound) {
    const CConfStruct record(path_list::local_settings, true);
    ShellWords words;
    for (const auto& [name, entry] : record.Interfaces()) {
        if (entry.interface_class == corvanshell::kSlaveClass && entry.master.empty() != bound)
            words.push_back(name);
    }
    return words;
}

} // namespace

ShellWords ListBondingModes() {
    return interfaces::SelectableBondingModes();
}

ShellWords ListBondingAdSelects() {
    return interfaces::BondingAdSelects();
}

ShellWords ListBondingLacpRates() {
    return interfaces::BondingLacpRates();
}

ShellWords ListBondingXmitHashPolicies() {
    return interfaces::BondingXmitHashPolicies();
}

ShellWords ListFreeBondIds() {
    return ListBondIds(false);
}

ShellWords ListUsedBondIds() {
    return ListBondIds(true);
}

ShellWords ListBoundSlaves() {
    return ListSlaves(true);
}

ShellWords ListLooseSlaves() {
    return ListSlaves(false);
}

ShellWords ListPrimarySlaves() {
    ShellWords words = ListSlaves(true);
    words.emplace_back("none");
    return words;
}

} // namespace value

template class detail::in_node<value::BondingMode, void>;
template class detail::in_node<value::BondingAdSelect, void>;
template class detail::in_node<value::BondingLacpRate, void>;
template class detail::in_node<value::BondingXmitHashPolicy, void>;
