#include "settings/text.h"

#include "platform/console.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <libxml/entities.h>
#include <libxml/parserInternals.h>
#include <string>

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

// The length of the XML character that the text begins with, 0 for anything else.
std::size_t CharacterLength(const char* text) {
    int length = 4;
    const int letter = xmlGetUTF8Char(reinterpret_cast<const unsigned char*>(text), &length);
    if (letter < 0 || !xmlIsCharQ(static_cast<unsigned>(letter)))
        return 0;
    // A character has one form of its own; the others, longer ones, are read as well but are no UTF-8.
    xmlChar form[5] = {};
    const auto size = static_cast<std::size_t>(xmlCopyCharMultiByte(form, letter));
    return std::memcmp(form, text, size) == 0 ? size : 0;
}

// Whether the text behind a "&" is the rest of a reference that XML knows without a document type.
bool IsReference(const char* text) {
    const char* end = std::strchr(text, ';');
    if (end == nullptr)
        return false;
    const std::string name(text, end);
    if (!name.starts_with('#'))
        return xmlGetPredefinedEntity(reinterpret_cast<const xmlChar*>(name.c_str())) != nullptr;
    const bool hex = name.starts_with("#x");
    const std::string digits = name.substr(hex ? 2 : 1);
    if (digits.find_first_not_of(hex ? "0123456789abcdefABCDEF" : "0123456789") != std::string::npos)
        return false;
    const unsigned long number = std::strtoul(digits.c_str(), nullptr, hex ? 16 : 10);
    return number <= 0x10ffff && xmlIsCharQ(static_cast<unsigned>(number));
}

} // namespace

std::string FormatBounded(const char* format, ...) {
    char buffer[kTextSize] = "";
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer, kTextSize, format, arguments);
    va_end(arguments);
    if (length < static_cast<int>(kTextSize))
        return buffer;
    return std::string(buffer, WholeCharacters(buffer, kTextSize - 1));
}

bool IsXmlText(const char* text) {
    while (*text != '\0') {
        const std::size_t length = CharacterLength(text);
        if (length == 0) {
            shell_print_error("settings: the text holds characters that a settings file cannot hold");
            return false;
        }
        text += length;
    }
    return true;
}

bool IsXmlContent(const char* text) {
    for (const char* sign = std::strchr(text, '&'); sign != nullptr; sign = std::strchr(sign + 1, '&')) {
        if (!IsReference(sign + 1)) {
            shell_print_error("settings: a \"&\" in the text of a setting is written \"&amp;\"");
            return false;
        }
    }
    return IsXmlText(text);
}

} // namespace settings
