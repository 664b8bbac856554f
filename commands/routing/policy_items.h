#pragma once

#include "commands/routing/policy_rules.h"
#include "platform/format.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <variant>

// What the policy commands know of each item.

namespace routing {

namespace items {

using Full = Format<std::string, unsigned long, std::string>;
using Bare = Format<std::string, unsigned long>;
using Any = std::variant<Full, Bare, Format<>>;

template <class Text>
consteval Any Choose(std::string_view text, Text format) {
    const auto conversions = std::count(text.begin(), text.end(), '%');
    if (conversions == 3)
        return Full(format);
    if (conversions == 2)
        return Bare(format);
    return Format<>(format);
}

} // namespace items

// A text of the policy's name, the priority and a value, of the first two, or of none of them.
class ItemFormat {
public:
    consteval ItemFormat(const char* format) : format_(items::Choose(format, format)) {}
    consteval ItemFormat(format::Translated format) : format_(items::Choose(format.text, format)) {}

    // Hands the format and the arguments that it takes to `print`.
    template <class Print>
    void Fill(const Print& print, const std::string& name, unsigned long priority,
              const std::string& value) const {
        if (const items::Full* full = std::get_if<items::Full>(&format_))
            print(*full, name, priority, value);
        else if (const items::Bare* bare = std::get_if<items::Bare>(&format_))
            print(*bare, name, priority);
        else
            print(std::get<Format<>>(format_));
    }

private:
    items::Any format_;
};

struct ItemTexts {
    ItemFormat log;
    ItemFormat obstacle; // the item is there already, or isn't there
    ItemFormat success;
    ItemFormat failure;
};

struct ItemRow {
    RuleItem item;
    bool (*is_value)(const std::string& value);
    const char* what; // the value's name
    const char* key;  // of the slot that the item takes
    const char* text; // of the item, in front of its value
    const char* removal;
    ItemTexts add;
    ItemTexts remove;
};

const ItemRow& RowOf(RuleItem item);

} // namespace routing
