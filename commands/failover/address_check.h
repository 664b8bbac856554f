#pragma once

namespace failover {

// Shows which machines answer for the active addresses of /etc/failover.ini. Works on the passive node only.
[[nodiscard]] bool CheckActiveAddresses();

} // namespace failover
