#pragma once

namespace settings::dhcp_server {

// Back to defaults: an empty unit with two lease times, no daemon files, no leases. Goes on through failures,
// which are reported; false when there was one.
[[nodiscard]] bool ResetDhcpServerSettings();

} // namespace settings::dhcp_server
