#include "shell/line.h"

#include <algorithm>

namespace shell {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kSpecial = " \t\"'\\#";

// Reads the word that begins at the place, and leaves the place behind it.
TypedWord ReadWord(std::string_view text, std::size_t& place, bool& is_open) {
    TypedWord word{"", place, place};
    char quote = 0;
    bool is_cut = false; // behind a backslash
    for (; place < text.size(); ++place) {
        const char letter = text[place];
        if (letter == '\\' && quote != '\'') {
            is_cut = ++place == text.size();
            if (is_cut)
                break;
            word.text += text[place];
        } else if (quote != 0 ? letter == quote : letter == '"' || letter == '\'') {
            quote = quote != 0 ? 0 : letter;
        } else if (quote == 0 && kBlanks.find(letter) != std::string_view::npos) {
            break;
        } else {
            word.text += letter;
        }
    }
    is_open = quote != 0 || is_cut;
    word.end = place;
    return word;
}

} // namespace

std::vector<std::string> Line::Texts() const {
    std::vector<std::string> texts;
    for (const TypedWord& word : words)
        texts.push_back(word.text);
    return texts;
}

Line SplitLine(std::string_view text) {
    Line line;
    for (std::size_t place = 0;;) {
        place = text.find_first_not_of(kBlanks, place);
        if (place == std::string_view::npos)
            return line;
        if (text[place] == '#') {
            line.is_comment = true;
            return line;
        }
        line.words.push_back(ReadWord(text, place, line.is_open));
    }
}

std::string Quote(const std::string& word) {
    if (!word.empty() && word.find_first_of(kSpecial) == std::string::npos)
        return word;
    std::string quoted = "\"";
    for (const char letter : word) {
        if (letter == '"' || letter == '\\')
            quoted += '\\';
        quoted += letter;
    }
    return quoted + '"';
}

std::size_t CountCharacters(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char letter) {
        return (static_cast<unsigned char>(letter) & 0xc0) != 0x80;
    }));
}

} // namespace shell
