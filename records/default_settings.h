#pragma once

namespace corvanshell {

// Brings both records up to date: defaults for what their files don't mention, entries for the hardware's
// interfaces, and no interface up with a bad or crossing network. Always true: what fails is reported by the
// records.
bool GenerateDefaults();

} // namespace corvanshell
