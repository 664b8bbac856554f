#include "shell/history.h"

#include "front/helpers/descriptor.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace shell {
namespace {

constexpr std::size_t kLimit = 1000;

} // namespace

std::vector<std::string> HistoryFile::Load() const {
    std::vector<std::string> lines;
    std::ifstream file(path_);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    if (lines.size() <= kLimit)
        return lines;
    const bool is_long = lines.size() > 2 * kLimit;
    lines.erase(lines.begin(), lines.end() - kLimit);
    // A line that another shell adds meanwhile may be lost, which costs nobody anything.
    if (is_long && std::rename(path_.c_str(), (path_ + "~").c_str()) == 0) {
        for (const std::string& line : lines)
            Append(line);
    }
    return lines;
}

void HistoryFile::Append(const std::string& line) const {
    std::error_code failure;
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), failure);
    const Descriptor file(::open(path_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    const std::string text = line + "\n";
    // A history is a convenience: one that can't be kept stops nobody.
    [[maybe_unused]] const ssize_t written = ::write(file.Get(), text.data(), text.size());
}

} // namespace shell
