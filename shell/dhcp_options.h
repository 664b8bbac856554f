#pragma once

#include "platform/shell_tree.h"

#include <string>

// The options of the DHCP daemon that go by their names. An option that it doesn't know, or a value of
// another form, keeps it from starting. Texts and single addresses go by their numbers, which bring the form
// along.

namespace shell {

enum class OptionForm { kFlag, kByte, kShort, kLong, kAddresses };

bool HasForm(const std::string& option, OptionForm form);
ShellWords ListOptions(OptionForm form);
ShellWords ListAllOptions();

template <OptionForm form>
bool IsOptionOf(const std::string& option) {
    return HasForm(option, form);
}

template <OptionForm form>
ShellWords ListOptionsOf() {
    return ListOptions(form);
}

} // namespace shell
