#pragma once

namespace failover {

// Lets the administrator edit /etc/failover.ini. A text whose addresses are not valid is edited again or
// given up. Until the new text has its guard, the old file and the old guard stand beside as "<file>~". False
// when the file could not be copied, read back or guarded.
[[nodiscard]] bool EditConfig();

} // namespace failover
