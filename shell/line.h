#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// A typed line: words between blanks. Quotes, single or double, and a backslash keep what follows from ending
// a word; "#" at the begin of a word starts a comment.

namespace shell {

struct TypedWord {
    std::string text;  // without its quotes
    std::size_t begin; // where it stands in the line, in bytes
    std::size_t end;
};

struct Line {
    std::vector<TypedWord> words;
    bool is_open = false;    // ends within a quoted text or behind a backslash
    bool is_comment = false; // ends within a comment

    std::vector<std::string> Texts() const;
};

Line SplitLine(std::string_view text);

// The word as it has to be typed.
std::string Quote(const std::string& word);

// How many characters of UTF-8 the text has, which are as many columns of a terminal.
std::size_t CountCharacters(std::string_view text);

} // namespace shell
