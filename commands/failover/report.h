#pragma once

#include "platform/date_time.h"

#include <string>

// What the cluster does, and what it did.

namespace failover {

// The daemon's own report, or the mode when it does not run.
[[nodiscard]] bool ShowInfo();
[[nodiscard]] bool ShowConfig();
// How many connections the node holds for the other one, or has got from it.
[[nodiscard]] bool ShowSyncConnections();

// Reads "<day>.<month>.<year>-<hour>:<minute>:<second>". The time of day is checked, the date is not. A text
// of another form is reported.
[[nodiscard]] bool ParseDateTime(const std::string& text, corvanshell::DateTime& moment);

// Shows the cluster's log of a time that is over; the time of day of both is valid. Throws std::runtime_error
// when the present can't be told in local time.
[[nodiscard]] bool View(const corvanshell::DateTime& begin, const corvanshell::DateTime& end);

} // namespace failover
