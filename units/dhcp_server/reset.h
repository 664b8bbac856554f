#pragma once

namespace settings::dhcp_server {

// Back to defaults: an empty unit with two lease times, no daemon files, no leases. What forbids a change
// forbids this before anything is touched; behind that it goes on through failures, which are reported, and
// is false when there was one.
[[nodiscard]] bool ResetDhcpServerSettings();

} // namespace settings::dhcp_server
