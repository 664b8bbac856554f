#include "commands/dgd/words.h"

#include <algorithm>

namespace dgd {

Words SplitWords(const std::string& line, const char* separators) {
    Words words;
    for (std::size_t start = 0; (start = line.find_first_not_of(separators, start)) != std::string::npos;) {
        const std::size_t end = std::min(line.find_first_of(separators, start), line.size());
        words.push_back(line.substr(start, end - start));
        start = end;
    }
    return words;
}

std::string JoinWords(const Words& words, std::size_t first) {
    std::string text;
    for (std::size_t i = first; i < words.size(); ++i)
        text += (i == first ? "" : " ") + words[i];
    return text;
}

} // namespace dgd
