#pragma once

#include <map>
#include <string>
#include <utility>

// A file of sections:
//
//     [section]
//     key = value       # a comment stands behind a blank, or on a line of its own
//
// Of two values of one key the later one counts.
class Ini {
public:
    // Reads the file. Throws std::runtime_error when it can't be read, or a line of it is none of the above.
    explicit Ini(const std::string& path);

    // "" when there is no such section or key.
    std::string Get(const std::string& section, const std::string& key) const;

private:
    std::map<std::pair<std::string, std::string>, std::string> values_;
};
