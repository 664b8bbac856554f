#pragma once

#include <string>

// Quotes a text for a shell command line: in single quotes, with every backslash doubled, for a consumer
// that strips one level of backslashes.
std::string ShellQuote(const std::string& text);

// In ASCII.
std::string ToUpper(std::string text);

// Strict decimal reading: false without a digit, with anything but a newline behind the number, or out of
// the range of long. `out` gets what was read in every case.
[[nodiscard]] bool ParseLong(const char* text, long* out);

// Replaces every match of a regular expression in a file, through a temporary file beside it and a rename.
// `replacement` is in the default format syntax of boost::regex_replace. A failure is reported on the
// error stream and in the log, and leaves the file as it was.
void ReplaceInFile(const std::string& path, const std::string& regexp, const std::string& replacement);
