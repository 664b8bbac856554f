#pragma once

#include <string>
#include <vector>

namespace dgd {

using Words = std::vector<std::string>;

// The words of a line, without the separators between them.
Words SplitWords(const std::string& line, const char* separators = " \t\r");
// The words from `first` on, with a blank between them.
std::string JoinWords(const Words& words, std::size_t first);

} // namespace dgd
