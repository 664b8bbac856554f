#include "units/content_filter/rule.h"

#include <algorithm>
#include <iterator>

namespace settings::content_filter {
namespace {

// The proxy reads lines of 8191 bytes and takes what is behind for a line of its own. The rest is for the
// words that stand in front of a value.
constexpr std::size_t kLongestText = 8000;

bool IsControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7f;
}

bool IsLine(const std::string& text) {
    return text.size() <= kLongestText && std::none_of(text.begin(), text.end(), IsControl);
}

bool HasRoom(const std::string& text, Place place) {
    return text.size() <= kLongestText &&
           (place != Place::kPattern || FormatMimeTypes(text).size() <= kLongestText);
}

// The proxy takes a value in double quotes for the name of a file to read, and joins a line that ends with a
// backslash with the next one.
bool IsFit(const std::string& text, Place place) {
    if (place == Place::kNone)
        return true;
    const auto is_unfit = [place](char character) {
        return IsControl(character) && !(place == Place::kWords && character == '\t');
    };
    return HasRoom(text, place) && std::none_of(text.begin(), text.end(), is_unfit) &&
           text.find('"') == std::string::npos && !text.ends_with('\\');
}

} // namespace

RuleText ReadRule(Node rule) {
    RuleText text;
    text.name = rule.GetAttr("name");
    bool is_read[std::size(kRuleFields)] = {};
    for (Node child = rule.FirstChild(); child; child = child.NextSibling()) {
        for (std::size_t i = 0; i < std::size(kRuleFields); ++i) {
            if (is_read[i] || !child.IsNamed(kRuleFields[i].element))
                continue;
            is_read[i] = true;
            text.*kRuleFields[i].value = child.GetText();
        }
    }
    return text;
}

const char* FindUnfit(const RuleText& rule) {
    if (!IsLine(rule.name))
        return "name";
    for (const RuleField& field : kRuleFields) {
        if (!IsFit(rule.*field.value, field.place))
            return field.element;
    }
    return nullptr;
}

std::string_view TakeWord(std::string_view& list) {
    constexpr std::string_view kBlanks = " \t";
    list.remove_prefix(std::min(list.find_first_not_of(kBlanks), list.size()));
    const std::string_view word = list.substr(0, list.find_first_of(kBlanks));
    list.remove_prefix(word.size());
    return word;
}

std::string FormatMimeTypes(std::string_view mime_types) {
    std::string patterns;
    for (std::string_view type = TakeWord(mime_types); !type.empty(); type = TakeWord(mime_types)) {
        patterns += patterns.empty() ? "^" : " ^";
        for (const char character : type) {
            if (character == '+')
                patterns += '\\';
            patterns += character;
        }
        patterns += "(;.*)?$";
    }
    return patterns;
}

} // namespace settings::content_filter
