#pragma once

#include <string>
#include <utility>
#include <vector>

namespace shell {

// The lines typed so far, in a file that only its owner reads, one a line. Several shells add to it at once;
// each knows what stood there when it began.
class HistoryFile {
public:
    explicit HistoryFile(std::string path) : path_(std::move(path)) {}

    // The newest lines, oldest first. A file that holds many more is cut to them.
    std::vector<std::string> Load() const;
    // Without a place to write to, the history ends with the shell.
    void Append(const std::string& line) const;

private:
    std::string path_;
};

} // namespace shell
