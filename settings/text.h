#pragma once

#include "platform/format.h"

#include <cstddef>
#include <string>

// The bounded texts of settings documents and queries.

namespace settings {

// With the byte that ends them.
constexpr std::size_t kTextSize = 8192;

// The finished text of a printf-style call. Longer text is cut silently, between two UTF-8 characters.
std::string FormatBounded(const char* format, ...);

template <class... Arguments>
std::string FormatText(FormatFor<Arguments...> format, const Arguments&... arguments) {
    return FormatBounded(format.Text(), format::Raw(arguments)...);
}

// Whether XML can hold the text. Reports an error otherwise.
[[nodiscard]] bool IsXmlText(const char* text);

// Whether an element can hold the text, in which "&" begins a reference. libxml2 would drop the text behind
// any other "&", or write a file that can't be read again. Reports an error otherwise.
[[nodiscard]] bool IsXmlContent(const char* text);

} // namespace settings
