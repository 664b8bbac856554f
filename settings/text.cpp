#include "settings/text.h"

#include "platform/console.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <libxml/xmlstring.h>

namespace settings {
namespace {

// The length of `text` without a character whose last bytes were cut off behind `length`.
std::size_t WholeCharacters(const char* text, std::size_t length) {
    std::size_t start = length;
    while (start > 0 && length - start < 4) {
        const auto byte = static_cast<unsigned char>(text[--start]);
        if ((byte & 0xc0) == 0x80)
            continue;
        const std::size_t size = byte < 0x80 ? 1 : byte < 0xe0 ? 2 : byte < 0xf0 ? 3 : 4;
        return start + size > length ? start : length;
    }
    return length;
}

bool IsForbidden(unsigned char byte) {
    return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

} // namespace

void FormatText(char (&buffer)[kTextSize], const char* format, va_list arguments) {
    buffer[0] = '\0';
    const int length = std::vsnprintf(buffer, kTextSize, format, arguments);
    if (length >= static_cast<int>(kTextSize))
        buffer[WholeCharacters(buffer, kTextSize - 1)] = '\0';
}

bool IsXmlText(const char* text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    if (xmlCheckUTF8(bytes) == 1 && std::none_of(bytes, bytes + std::strlen(text), IsForbidden))
        return true;
    shell_print_error("settings: the text holds characters that a settings file cannot hold");
    return false;
}

} // namespace settings
