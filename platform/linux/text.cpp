#include "text.h"

#include <cerrno>
#include <cstdio>

namespace linux_platform {

namespace {

// The bytes of the control character that the text begins with, 0 when it begins with none. Those of the
// upper half are two bytes of UTF-8.
std::size_t ControlLength(std::string_view text) {
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    if (byte(0) < ' ' || byte(0) == 0x7f)
        return 1;
    return text.size() > 1 && byte(0) == 0xc2 && byte(1) >= 0x80 && byte(1) < 0xa0 ? 2 : 0;
}

} // namespace

std::string FormatText(const char* format, std::va_list arguments) {
    const int error = errno;
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text;
    if (length > 0) {
        text.resize(static_cast<std::size_t>(length));
        errno = error;
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    errno = error;
    return text;
}

std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::string Harmless(std::string_view text, std::string_view allowed) {
    std::string harmless;
    harmless.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t size = ControlLength(text.substr(i));
        if (size == 0 || allowed.find(text[i]) != std::string_view::npos) {
            harmless += text[i];
            continue;
        }
        for (const char byte : text.substr(i, size)) {
            char octal[5];
            std::snprintf(octal, sizeof octal, "#%03o", static_cast<unsigned char>(byte));
            harmless += octal;
        }
        i += size - 1;
    }
    return harmless;
}

std::string_view Trim(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace linux_platform
