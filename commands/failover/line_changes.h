#pragma once

#include <string>
#include <vector>

namespace failover {

using Lines = std::vector<std::string>;

// The lines of a file, without their newlines. False, with errno, when it can't be read.
[[nodiscard]] bool ReadLines(const std::string& path, Lines& lines);

// What turns one text into the other: each line that went behind a "-", each that came behind a "+", in the
// order of the texts.
Lines FindChanges(const Lines& before, const Lines& after);

} // namespace failover
