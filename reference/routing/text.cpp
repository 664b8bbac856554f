#include "reference/routing/text.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cctype>
#include <charconv>
#include <net/if.h>

namespace reference::routing {

Words Split(std::string_view line) {
    constexpr const char* blanks = " \t\r\n";
    Words words;
    for (std::size_t start = 0; (start = line.find_first_not_of(blanks, start)) != line.npos;) {
        const std::size_t end = std::min(line.find_first_of(blanks, start), line.size());
        words.emplace_back(line.substr(start, end - start));
        start = end;
    }
    return words;
}

std::string Join(const Words& words, std::size_t first) {
    std::string text;
    for (std::size_t i = first; i < words.size(); ++i)
        text += (i == first ? "" : " ") + words[i];
    return text;
}

bool StartsWith(const Words& words, std::initializer_list<const char*> beginning) {
    return words.size() >= beginning.size() && std::equal(beginning.begin(), beginning.end(), words.begin());
}

bool Equal(const Words& words, std::initializer_list<const char*> line) {
    return words.size() == line.size() && StartsWith(words, line);
}

std::optional<std::uint32_t> ToNumber(std::string_view text, std::uint32_t lowest, std::uint32_t highest) {
    std::uint32_t number = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    if (error != std::errc() || end != last || number < lowest || number > highest)
        return std::nullopt;
    return number;
}

std::optional<std::uint32_t> ToAddress(const std::string& text) {
    in_addr address{};
    if (inet_pton(AF_INET, text.c_str(), &address) != 1)
        return std::nullopt;
    return ntohl(address.s_addr);
}

std::string AddressText(std::uint32_t address) {
    char text[INET_ADDRSTRLEN] = "";
    const in_addr network{htonl(address)};
    inet_ntop(AF_INET, &network, text, sizeof text);
    return text;
}

std::string UpperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    return text;
}

bool IsName(const std::string& text) {
    return !text.empty() && text.size() <= 63 &&
           std::all_of(text.begin(), text.end(), [](unsigned char letter) {
               return letter < 0x80 &&
                      (std::isalnum(letter) || letter == '-' || letter == '_' || letter == '.');
           });
}

bool IsInterface(const std::string& text) {
    return !text.empty() && text.size() < IFNAMSIZ && text != "." && text != ".." &&
           std::none_of(text.begin(), text.end(), [](unsigned char letter) {
               return std::isspace(letter) || letter == '/' || letter == ':';
           });
}

} // namespace reference::routing
