#include "shell/history.h"

#include "platform/descriptor.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace shell {
namespace {

constexpr std::size_t kLimit = 1000;

bool WriteAll(int file, const std::string& text) {
    return ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

// The short file stands beside the long one until it is whole: a full disk costs nothing.
void Replace(const std::string& path, const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    std::string beside = path + ".XXXXXX";
    const Descriptor file(::mkostemp(beside.data(), O_CLOEXEC));
    if (file.Get() < 0)
        return;
    const bool is_whole = WriteAll(file.Get(), text) && ::fsync(file.Get()) == 0;
    if (!is_whole || std::rename(beside.c_str(), path.c_str()) != 0)
        ::unlink(beside.c_str());
}

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
    if (is_long)
        Replace(path_, lines);
    return lines;
}

void HistoryFile::Append(const std::string& line) const {
    const std::filesystem::path folder = std::filesystem::path(path_).parent_path();
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, failure);
    const Descriptor file(
        ::open(path_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_CLOEXEC, 0600));
    // A history is a convenience: one that can't be kept stops nobody.
    [[maybe_unused]] const bool is_written = WriteAll(file.Get(), line + "\n");
}

} // namespace shell
