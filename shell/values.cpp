#include "shell/values.h"

#include "commands/arguments/arguments.h"
#include "platform/network.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string_view>

namespace shell {
namespace {

// Whether the text has the form: "x" stands for a hexadecimal digit, "9" for a decimal one,
// anything else for itself.
bool HasForm(const std::string& text, std::string_view form) {
    return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char letter, char place) {
        const auto byte = static_cast<unsigned char>(letter);
        switch (place) {
        case 'x':
            return std::isxdigit(byte) != 0;
        case '9':
            return std::isdigit(byte) != 0;
        default:
            return letter == place;
        }
    });
}

} // namespace

bool Range::parse(const std::string& word, std::string& parsed) const {
    unsigned long number = 0;
    const char* const end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || number < low_ || number > high_ ||
        std::to_string(number).size() != word.size())
        return false;
    parsed = word;
    return true;
}

std::string Range::sample() const {
    return std::to_string(low_) + " to " + std::to_string(high_);
}

bool IsText(const std::string& text) {
    return std::none_of(text.begin(), text.end(), [](char letter) {
        return static_cast<unsigned char>(letter) < ' ' || letter == 0x7f || letter == '"' || letter == '\\';
    });
}

bool IsWord(const std::string& text) {
    return !text.empty() && IsText(text) && text.find_first_of(" '") == std::string::npos;
}

bool IsDomainName(const std::string& text) {
    return corvanshell::is_valid_domain_name(text, false, false);
}

bool IsServerName(const std::string& text) {
    return corvanshell::is_valid_ip(text) || IsDomainName(text);
}

bool IsAddressList(const std::string& text) {
    constexpr std::string_view kSeparator = ", ";
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + kSeparator.size()) {
        end = text.find(kSeparator, begin);
        if (!arguments::IsAddress(text.substr(begin, end - begin)))
            return false;
    }
    return true;
}

bool IsMacAddress(const std::string& text) {
    return HasForm(text, "xx:xx:xx:xx:xx:xx");
}

bool IsBytes(const std::string& text) {
    std::string form = "xx";
    while (form.size() < text.size())
        form += ":xx";
    return HasForm(text, form);
}

bool IsPositive(const std::string& text) {
    return arguments::IsNumber(text) && text[0] != '0';
}

bool IsDateTime(const std::string& text) {
    return HasForm(text, "99.99.9999-99:99:99");
}

} // namespace shell
