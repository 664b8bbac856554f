#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

// printf(3)'s formats, held against their arguments by the compiler. A std::string stands for "%s".

namespace format {

// What a conversion takes, and what an argument is.
enum class Kind { kNone, kText, kInt, kUnsigned, kLong, kUnsignedLong, kDouble };

template <class Argument>
consteval Kind KindOf() {
    using Type = std::decay_t<Argument>;
    if constexpr (std::is_same_v<Type, std::string> || std::is_same_v<Type, const char*> ||
                  std::is_same_v<Type, char*>)
        return Kind::kText;
    else if constexpr (std::is_same_v<Type, int>)
        return Kind::kInt;
    else if constexpr (std::is_same_v<Type, unsigned>)
        return Kind::kUnsigned;
    else if constexpr (std::is_same_v<Type, long>)
        return Kind::kLong;
    else if constexpr (std::is_same_v<Type, unsigned long>)
        return Kind::kUnsignedLong;
    else if constexpr (std::is_same_v<Type, double>)
        return Kind::kDouble;
    else
        return Kind::kNone;
}

// Takes the next conversion from the text, which begins behind its "%". kNone for "%%" and "%m", which take
// no argument.
constexpr Kind TakeConversion(std::string_view& text) {
    const auto skip = [&text](std::string_view letters) {
        text.remove_prefix(std::min(text.find_first_not_of(letters), text.size()));
    };
    skip("-+ #0");
    skip("0123456789.");
    const bool is_long = text.starts_with('l') || text.starts_with('z');
    text.remove_prefix(is_long ? 1 : 0);
    if (text.empty())
        throw "a conversion is cut off";
    const char letter = text.front();
    text.remove_prefix(1);
    switch (letter) {
    case '%':
    case 'm':
        return Kind::kNone;
    case 's':
        return Kind::kText;
    case 'c':
    case 'd':
    case 'i':
        return is_long ? Kind::kLong : Kind::kInt;
    case 'u':
    case 'x':
    case 'X':
        return is_long ? Kind::kUnsignedLong : Kind::kUnsigned;
    case 'f':
        return Kind::kDouble;
    default:
        throw "not a conversion that is used here";
    }
}

// A text that goes through gettext(3) when it is printed: Refuse(Tr("%s: no such unit"), name).
struct Translated {
    const char* text;
};

} // namespace format

consteval format::Translated Tr(const char* text) {
    return {text};
}

// A format for arguments of these types. One that does not fit them does not compile.
template <class... Arguments>
class Format {
public:
    consteval Format(const char* format) : text_(format), translated_(false) { Check(); }
    consteval Format(format::Translated format) : text_(format.text), translated_(true) { Check(); }

    const char* Text() const { return text_; }
    bool IsTranslated() const { return translated_; }

private:
    constexpr void Check() const {
        constexpr format::Kind kinds[] = {format::KindOf<Arguments>()..., format::Kind::kNone};
        std::size_t used = 0;
        std::string_view rest = text_;
        while (rest.find('%') != std::string_view::npos) {
            rest.remove_prefix(rest.find('%') + 1);
            const format::Kind kind = format::TakeConversion(rest);
            if (kind != format::Kind::kNone && kind != kinds[used < sizeof...(Arguments) ? used++ : used])
                throw "a conversion and its argument don't fit";
        }
        if (used != sizeof...(Arguments))
            throw "the format has fewer conversions than arguments";
    }

    const char* text_;
    bool translated_;
};

// The format of a call with these arguments, which alone tell their types.
template <class... Arguments>
using FormatFor = Format<std::type_identity_t<Arguments>...>;

namespace format {

// What goes through "..." for an argument.
inline const char* Raw(const std::string& text) {
    return text.c_str();
}
inline const char* Raw(const char* text) {
    return text;
}
template <class Number>
requires std::is_arithmetic_v<Number> Number Raw(Number number) {
    return number;
}

} // namespace format
