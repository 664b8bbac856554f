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
// The process that a file names; -1 when there is no such file.
pid_t ReadPid(const char* path);
// Ends what a killed predecessor has left: the process that the file names, as long as it runs that program.
void EndLeftOver(const char* pid_file, const char* program);

} // namespace reference::failover
