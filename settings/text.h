#pragma once

#include <cstdarg>
#include <cstddef>

// The bounded texts of settings documents and queries.

namespace settings {

constexpr std::size_t kTextSize = 8192;

// Formats into a buffer of kTextSize bytes; longer text is cut silently, between two UTF-8 characters.
[[gnu::format(printf, 2, 0)]] void FormatText(char (&buffer)[kTextSize], const char* format,
                                              va_list arguments);

// Whether XML can hold the text. Reports an error otherwise.
[[nodiscard]] bool IsXmlText(const char* text);

// Whether an element can hold the text, in which "&" begins a reference. libxml2 would drop the text behind
// any other "&", or write a file that can't be read again. Reports an error otherwise.
[[nodiscard]] bool IsXmlContent(const char* text);

} // namespace settings
