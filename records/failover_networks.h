#pragma once

#include "records/network_crossing.h"

#include <string>

namespace corvanshell {

// The interface of the cluster file, other than `name`, whose network crosses `network`; "" when none does.
// An address that can't be read is reported, and its interface counts as crossing.
[[nodiscard]] std::string FindFailoverNetwork(const std::string& name, const Network& network);

// Whether two networks of the cluster file cross each other.
[[nodiscard]] bool FailoverNetworksCross();

} // namespace corvanshell
