#pragma once

#include <string>
#include <vector>

// Outside programs, run to their end.

namespace linux_platform {

// The descriptors that a program gets as its standard streams. -1 leaves it ours, but for an input that is no
// terminal: then it gets /dev/null.
struct Streams {
    int input = -1;
    int output = -1;
    int errors = -1;
};

// Runs a program without a shell and gives its wait status, -1 with errno when it can't be started. The
// interrupt keys meanwhile reach the program and not us, as with system(3), unless we handle them. Our own
// buffered output is written first.
int RunProgram(const std::vector<std::string>& arguments, const Streams& streams = {});

// The same, with the program's standard output collected.
int CollectProgram(const std::vector<std::string>& arguments, Streams streams, std::string& output);

// Ends the program that runs, if one does. A signal handler may call it.
void EndProgram();

// The exit status as a shell tells it: 128 + the signal's number, 127 for a program that can't be started.
int ExitStatus(int wait_status);

} // namespace linux_platform
