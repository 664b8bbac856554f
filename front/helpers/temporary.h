#pragma once

#include <string>

// Makes a file from the template `path`, see mkstemp(3), and takes its name away, so that nothing is left
// behind whatever ends the process. The result is its descriptor, and `path` the name that the open file has
// in our process; -1 with errno set when it can't be made.
[[nodiscard]] int MakeTemporary(std::string& path);
