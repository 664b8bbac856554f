#include "commands/arguments/arguments.h"

#include "platform/messages.h"
#include "platform/network.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace arguments {
namespace {

constexpr std::size_t kNumberLimit = 10;
constexpr std::size_t kMtuLimit = 5; // no interface takes more than 65535 bytes
constexpr std::size_t kNameLimit = 63;
constexpr std::size_t kInterfaceNameLimit = 15;
constexpr std::size_t kShownLimit = 64;

bool IsDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

bool IsLetterOrDigit(char letter) {
    return IsDigit(letter) || (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

bool IsWord(const std::string& text, std::string_view others) {
    return !text.empty() && text.size() <= kNameLimit &&
           std::all_of(text.begin(), text.end(), [&](char letter) {
               return IsLetterOrDigit(letter) || others.find(letter) != std::string_view::npos;
           });
}

bool IsInterfaceLetter(char letter) {
    constexpr std::string_view refused = "/\"'`$&|;<>()*?[]{}~#!^\\%=";
    const auto byte = static_cast<unsigned char>(letter);
    return byte > ' ' && byte != 0x7f && byte != 0xa0 && refused.find(letter) == std::string_view::npos;
}

// A refused text may hold anything, and much of it.
std::string Shown(const std::string& text) {
    std::string shown = text.substr(0, kShownLimit);
    std::replace_if(
        shown.begin(), shown.end(),
        [](char letter) { return static_cast<unsigned char>(letter) < ' ' || letter == 0x7f; }, '?');
    return shown;
}

} // namespace

bool IsNumber(const std::string& text) {
    return !text.empty() && text.size() <= kNumberLimit && std::all_of(text.begin(), text.end(), IsDigit);
}

bool IsAddress(const std::string& text) {
    return corvanshell::is_valid_ip(text);
}

bool IsHostAddress(const std::string& text) {
    constexpr std::int64_t kThisNetwork = 0, kLoopback = 127, kMulticast = 224;
    const std::int64_t first_byte = corvanshell::address_to_number(text) >> 24;
    return kThisNetwork < first_byte && first_byte < kMulticast && first_byte != kLoopback;
}

bool IsNetmask(const std::string& text) {
    return corvanshell::subnetmask_to_cidr(text) >= 0;
}

bool IsNetwork(const std::string& text) {
    const std::size_t slash = text.find('/');
    return IsAddress(text.substr(0, slash)) &&
           (slash == std::string::npos || !corvanshell::cidr_to_subnetmask(text.substr(slash + 1)).empty());
}

bool IsName(const std::string& text) {
    return IsWord(text, "-_.");
}

bool IsInterfaceName(const std::string& text) {
    return !text.empty() && text.size() <= kInterfaceNameLimit && text != "." && text != ".." &&
           std::all_of(text.begin(), text.end(), IsInterfaceLetter);
}

bool IsDgdText(const std::string& text) {
    return IsWord(text, "-");
}

bool IsMtu(const std::string& text) {
    return text.empty() || text == "auto" || (text.size() <= kMtuLimit && IsNumber(text));
}

bool IsMetric(const std::string& text) {
    return text == "none" || IsNumber(text);
}

bool IsOnOff(const std::string& text) {
    return text == "on" || text == "off";
}

bool Check(std::initializer_list<Argument> arguments) {
    for (const Argument& argument : arguments) {
        if ((argument.optional && argument.text.empty()) || argument.is_good(argument.text))
            continue;
        return Refuse(Tr("wrong %s: \"%s\""), argument.what, Shown(argument.text));
    }
    return true;
}

} // namespace arguments
