#pragma once

namespace settings::dhcp_server {

// Shows what was printed so far and asks at a terminal whether to go on; without a terminal nobody is asked
// and the answer is yes.
[[nodiscard]] bool ConfirmRemoval(const char* question);

} // namespace settings::dhcp_server
