#pragma once

namespace corvanshell {
class CConfStruct;
}

// The active addresses of /etc/failover.ini: what the active node of the cluster holds.

namespace failover {

// Whether no active address crosses another network of this appliance. Each fault is reported. "change_this"
// stands for an address that nobody has configured yet, and passes.
[[nodiscard]] bool ValidateFailoverAddresses();
// The same against a record that the caller has read: it can't be read while /etc/failover.ini differs from
// its guard.
[[nodiscard]] bool ValidateFailoverAddresses(const corvanshell::CConfStruct& record);

} // namespace failover
