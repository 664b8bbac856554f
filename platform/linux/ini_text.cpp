#include "ini_text.h"

#include "text.h"

#include <algorithm>

namespace linux_platform {
namespace {

// A comment stands on a line of its own, or behind a value and a blank.
std::string_view WithoutComment(std::string_view line) {
    for (std::size_t i = 0; i < line.size(); ++i)
        if ((line[i] == '#' || line[i] == ';') && (i == 0 || line[i - 1] == ' ' || line[i - 1] == '\t'))
            return Trim(line.substr(0, i));
    return line;
}

bool TakeLine(std::vector<IniSection>& sections, std::string_view line) {
    if (line.starts_with('[')) {
        const bool closed = line.ends_with(']');
        sections.push_back({std::string(closed ? line.substr(1, line.size() - 2) : line), {}});
        return closed;
    }
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos)
        return line.empty();
    sections.back().values.emplace_back(Trim(line.substr(0, sign)), Trim(line.substr(sign + 1)));
    return true;
}

} // namespace

std::string IniSection::get(std::string_view key) const {
    const auto last =
        std::find_if(values.rbegin(), values.rend(), [&](const auto& pair) { return pair.first == key; });
    return last != values.rend() ? last->second : "";
}

std::vector<IniSection> ParseIni(std::string_view text, std::size_t& bad_line) {
    std::vector<IniSection> sections(1);
    std::size_t number = 0;
    bad_line = 0;
    for (const std::string& raw : SplitLines(text)) {
        ++number;
        if (!TakeLine(sections, WithoutComment(Trim(raw))) && bad_line == 0)
            bad_line = number;
    }
    return sections;
}

} // namespace linux_platform
