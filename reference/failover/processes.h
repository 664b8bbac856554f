#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace reference::failover {

using Arguments = std::vector<std::string>;

// Starts a program that ends with this process, whatever ends it; -1 when it can't. Its signals are not held.
pid_t Start(const Arguments& arguments);
// Runs a program to its end, without a word; true when it ended with 0.
bool Run(const Arguments& arguments);
// Ends a child, in good order if it can be had in time.
void End(pid_t child);

} // namespace reference::failover
