#pragma once

namespace failover {

// Lets the administrator edit /etc/failover.ini. A text whose addresses are not valid is edited again or
// given up. Until the new text has its guard, the old file and the old guard stand beside as "<file>~".
// SIGHUP, SIGTERM and SIGINT give the edit up and then take their course. False when the file is being edited
// already, or could not be copied, opened in the editor, read back or guarded.
[[nodiscard]] bool EditConfig();

} // namespace failover
