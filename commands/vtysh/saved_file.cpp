#include "commands/vtysh/saved_file.h"

#include "platform/messages.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace vtysh {
namespace {

constexpr std::size_t kLineSize = 8192;

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

bool Fail(const Format<const char*, const char*>& format, const Daemon& daemon, Failure failure) {
    return failure == Failure::kTold &&
           Refuse<const char*, const char*>(format, daemon.file, std::strerror(errno));
}

} // namespace

bool ReadSaved(const Daemon& daemon, const std::function<bool(const std::string&)>& take, Failure failure) {
    const Stream file(std::fopen(daemon.file, "re"), std::fclose);
    if (file == nullptr)
        return Fail(Tr("%s: failed to open file: %s"), daemon, failure);
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
    return std::ferror(file.get()) == 0 || Fail(Tr("%s: failed to read file: %s"), daemon, failure);
}

bool ReadBlock(const Daemon& daemon, const std::function<bool(const std::string&)>& is_header, Lines& block,
               Failure failure) {
    bool found = false;
    Lines lines;
    const auto take = [&](const std::string& line) {
        if (!found) {
            found = is_header(line);
            return true;
        }
        if (line.starts_with('!'))
            return false;
        lines.push_back(line);
        return true;
    };
    if (!ReadSaved(daemon, take, failure) || !found)
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
