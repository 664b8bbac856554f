#pragma once

#include <string>

namespace shell {

// The help of a word that stands in front of a value within a longer line, "" for any other.
const char* KeywordHelp(const std::string& word);

} // namespace shell
