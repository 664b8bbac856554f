#include "commands/vtysh/config_file.h"

#include "platform/console.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <libintl.h>
#include <memory>

namespace vtysh {
namespace {

constexpr std::size_t kLineSize = 8192;

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

} // namespace

bool ReadConfigFile(const char* path, const std::function<bool(const std::string&)>& take) {
    const Stream file(std::fopen(path, "re"), std::fclose);
    if (file == nullptr) {
        shell_print_error(gettext("%s: failed to open file: %s"), path, std::strerror(errno));
        return false;
    }
    char buffer[kLineSize];
    bool starts = true;
    while (std::fgets(buffer, sizeof buffer, file.get()) != nullptr) {
        std::string line = buffer;
        const bool ends = !line.empty() && line.back() == '\n';
        if (ends)
            line.pop_back();
        if (starts && !take(line))
            return true;
        starts = ends;
    }
    if (std::ferror(file.get()) == 0)
        return true;
    shell_print_error(gettext("%s: failed to read file: %s"), path, std::strerror(errno));
    return false;
}

bool ReadBlock(const char* path, const std::function<bool(const std::string&)>& is_header, Lines& block) {
    bool found = false;
    Lines lines;
    const bool read = ReadConfigFile(path, [&](const std::string& line) {
        if (!found) {
            found = is_header(line);
            return true;
        }
        if (line.starts_with('!'))
            return false;
        lines.push_back(line);
        return true;
    });
    if (!read || !found)
        return false;
    block = std::move(lines);
    return true;
}

bool HoldsWords(const std::string& line, const std::string& part) {
    for (std::size_t place = 0; (place = line.find(part, place)) != std::string::npos; ++place) {
        const std::size_t end = place + part.size();
        const bool begins = place == 0 || line[place - 1] == ' ' || part.starts_with(' ');
        if (begins && (end == line.size() || line[end] == ' '))
            return true;
    }
    return false;
}

} // namespace vtysh
