#include "commands/failover/line_changes.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>

namespace failover {
namespace {

// Above it all lines between the first and the last change count as changed: the search would take long.
constexpr std::size_t kCellLimit = 4'000'000;

// The length of the longest common run of lines behind each pair of places, found from the end.
class CommonLines {
public:
    CommonLines(const Lines& before, const Lines& after)
        : width_(after.size() + 1), lengths_((before.size() + 1) * width_) {
        for (std::size_t i = before.size(); i-- > 0;) {
            for (std::size_t j = after.size(); j-- > 0;)
                Cell(i, j) =
                    before[i] == after[j] ? 1 + Cell(i + 1, j + 1) : std::max(Cell(i + 1, j), Cell(i, j + 1));
        }
    }
    unsigned& Cell(std::size_t i, std::size_t j) { return lengths_[i * width_ + j]; }

private:
    std::size_t width_;
    std::vector<unsigned> lengths_;
};

void AddAll(Lines& changes, const char* sign, const Lines& lines, std::size_t start) {
    for (std::size_t i = start; i < lines.size(); ++i)
        changes.push_back(sign + lines[i]);
}

Lines FindSmallChanges(const Lines& before, const Lines& after) {
    CommonLines common(before, after);
    Lines changes;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < before.size() && j < after.size()) {
        if (before[i] == after[j]) {
            ++i;
            ++j;
        } else if (common.Cell(i + 1, j) >= common.Cell(i, j + 1)) {
            changes.push_back("-" + before[i++]);
        } else {
            changes.push_back("+" + after[j++]);
        }
    }
    AddAll(changes, "-", before, i);
    AddAll(changes, "+", after, j);
    return changes;
}

} // namespace

bool ReadLines(const std::string& path, Lines& lines) {
    errno = 0;
    std::ifstream input(path);
    if (!input)
        return false;
    Lines read;
    for (std::string line; std::getline(input, line);)
        read.push_back(line);
    if (input.bad())
        return false;
    lines = std::move(read);
    return true;
}

Lines FindChanges(const Lines& before, const Lines& after) {
    const auto start = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto end = std::mismatch(before.rbegin(), std::make_reverse_iterator(start.first), after.rbegin(),
                                   std::make_reverse_iterator(start.second));
    const Lines old_part(start.first, end.first.base());
    const Lines new_part(start.second, end.second.base());
    if (old_part.size() * new_part.size() <= kCellLimit)
        return FindSmallChanges(old_part, new_part);
    Lines changes;
    AddAll(changes, "-", old_part, 0);
    AddAll(changes, "+", new_part, 0);
    return changes;
}

} // namespace failover
