#include "shell/values.h"

#include "commands/arguments/arguments.h"
#include "platform/network.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
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

bool TurnMac(const std::string& text, std::string& mac) {
    std::string turned = text;
    std::replace(turned.begin(), turned.end(), '-', ':');
    const bool is_good = HasForm(turned, "xx:xx:xx:xx:xx:xx");
    if (is_good)
        mac = turned;
    return is_good;
}

bool TurnNetmask(const std::string& text, std::string& netmask) {
    const std::string length = text.substr(text.starts_with('/') ? 1 : 0);
    const std::string turned = arguments::IsNumber(length) ? corvanshell::cidr_to_subnetmask(length) : text;
    const bool is_good = arguments::IsNetmask(turned);
    if (is_good)
        netmask = turned;
    return is_good;
}

bool IsHostName(const std::string& text) {
    const auto is_end = [](char letter) { return std::isalnum(static_cast<unsigned char>(letter)) != 0; };
    for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1) {
        end = text.find('.', begin);
        const std::string part = text.substr(begin, end - begin);
        if (part.empty() || !is_end(part.front()) || !is_end(part.back()))
            return false;
    }
    return arguments::IsName(text);
}

bool IsKernelMetric(const std::string& text) {
    return arguments::IsNumber(text) && std::stoull(text) <= UINT32_MAX;
}

bool IsKernelMetricOrNone(const std::string& text) {
    return text == "none" || IsKernelMetric(text);
}

bool IsVlanId(const std::string& text) {
    std::string parsed;
    return Range(1, 4094).parse(text, parsed);
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
