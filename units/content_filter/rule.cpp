#include "units/content_filter/rule.h"

#include <algorithm>

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

// The proxy takes a value in double quotes for the name of a file to read, and joins a line that ends with a
// backslash with the next one.
bool IsValue(const std::string& text) {
    return IsLine(text) && text.find('"') == std::string::npos && !text.ends_with('\\');
}

} // namespace

RuleText ReadRule(Node rule) {
    RuleText text;
    text.name = rule.GetAttr("name");
    for (Node child = rule.FirstChild(); child; child = child.NextSibling()) {
        for (const RuleField& field : kRuleFields) {
            std::string& value = text.*field.value;
            if (value.empty() && child.IsNamed(field.element))
                value = child.GetText();
        }
    }
    return text;
}

bool IsConfigurable(const RuleText& rule, std::string& fault) {
    if (!IsLine(rule.name)) {
        fault = "name";
        return false;
    }
    for (const RuleField& field : kRuleFields) {
        if (IsValue(rule.*field.value))
            continue;
        fault = field.element;
        return false;
    }
    return true;
}

} // namespace settings::content_filter
