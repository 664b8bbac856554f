#pragma once

#include "platform/shell_tree.h"

#include <cstddef>
#include <string>
#include <vector>

// The limits and words of bonds, and the command arguments that offer them.

namespace interfaces {

constexpr std::size_t kMaximumBondNumber = 3;
constexpr std::size_t kMinimumSlaves = 1;
constexpr std::size_t kMaximumSlaves = 3;

using WordList = std::vector<std::string>;

const WordList& SelectableBondingModes();
const WordList& BondingAdSelects();
const WordList& BondingLacpRates();
const WordList& BondingXmitHashPolicies();
[[nodiscard]] bool IsOneOf(const WordList& words, const std::string& word);

// "bond" and the number.
std::string BondName(const std::string& number);

} // namespace interfaces

// One argument class each: its words are computed when they are asked for.
namespace value {

template <ShellWords (*words)()>
class bonding_list : public generic<const std::string>, public list_completion {
public:
    ShellWords list() const override { return words(); }
};

ShellWords ListBondingModes();
ShellWords ListBondingAdSelects();
ShellWords ListBondingLacpRates();
ShellWords ListBondingXmitHashPolicies();
ShellWords ListFreeBondIds();
ShellWords ListUsedBondIds();
ShellWords ListBoundSlaves();
ShellWords ListLooseSlaves();
ShellWords ListPrimarySlaves(); // the bound slaves, then "none"

class BondingMode : public bonding_list<ListBondingModes> {};
class BondingAdSelect : public bonding_list<ListBondingAdSelects> {};
class BondingLacpRate : public bonding_list<ListBondingLacpRates> {};
class BondingXmitHashPolicy : public bonding_list<ListBondingXmitHashPolicies> {};
class BondingFreeBondId : public bonding_list<ListFreeBondIds> {};
class BondingUsedBondId : public bonding_list<ListUsedBondIds> {};
class BondingBoundSlaveInterface : public bonding_list<ListBoundSlaves> {};
class BondingLooseSlaveInterface : public bonding_list<ListLooseSlaves> {};
class BondingPrimarySlaveInterface : public bonding_list<ListPrimarySlaves> {};

} // namespace value

// The stages of the lists that never change.
extern template class detail::in_node<value::BondingMode, void>;
extern template class detail::in_node<value::BondingAdSelect, void>;
extern template class detail::in_node<value::BondingLacpRate, void>;
extern template class detail::in_node<value::BondingXmitHashPolicy, void>;
