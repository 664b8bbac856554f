#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace linux_platform {

constexpr std::size_t ini_limit = 1024 * 1024;

struct IniSection {
    std::string name;
    std::vector<std::pair<std::string, std::string>> values;

    // The last value of the key, "" when there is none.
    std::string get(std::string_view key) const;
};

// The sections in file order, repeated ones apart. The first holds what stands before any section, and has no
// name. `bad_line` gets the number of the first line that is no section, value, comment or empty line, 0 when
// there is none; such a line is passed over.
std::vector<IniSection> ParseIni(std::string_view text, std::size_t& bad_line);

} // namespace linux_platform
