#pragma once

namespace shell {

// Shows the SNMP agent's settings. Passwords and keys are not among them.
[[nodiscard]] bool ShowSnmpSettings();

} // namespace shell
