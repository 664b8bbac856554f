#pragma once

#include "settings/node.h"

#include <string>
#include <string_view>

// One rule of the filter:
//
//     <rule name="no-uploads">
//       <source>10.0.0.0/8</source>          ("@any": no condition)
//       <destination>@any</destination>
//       <http-command>POST PUT</http-command>
//       <mime-type>video/mp4</mime-type>
//       <action>drop</action>                (every other word allows)
//     </rule>

namespace settings::content_filter {

// The values of a rule; what is absent is empty.
struct RuleText {
    std::string name;
    std::string source;
    std::string destination;
    std::string command;
    std::string mime_type;
    std::string action;
};

// What may stand in the proxy's configuration for a value.
enum class Place {
    kNone,    // the value itself never gets there
    kWords,   // words between blanks or tabs
    kPattern, // the same without tabs
};

// The element of each value but the name, which is an attribute, in the order of the file.
struct RuleField {
    const char* element;
    std::string RuleText::*value;
    Place place;
};

constexpr RuleField kRuleFields[] = {
    {"source", &RuleText::source, Place::kWords},
    {"destination", &RuleText::destination, Place::kWords},
    {"http-command", &RuleText::command, Place::kWords},
    {"mime-type", &RuleText::mime_type, Place::kPattern},
    {"action", &RuleText::action, Place::kNone},
};

constexpr const char* kAnyAddress = "@any";

// Of several elements of a name the first one counts.
RuleText ReadRule(Node rule);

// The name of the value that can't stand in the proxy's configuration without becoming more than a value,
// null when there is none. The rule's name stands in a comment.
const char* FindUnfit(const RuleText& rule);

// A list of content types as patterns of the proxy, in which a "+" is an ordinary character.
std::string FormatMimeTypes(std::string_view mime_types);

// The next word of a list between blanks and tabs, "" at its end. Takes it from the list.
std::string_view TakeWord(std::string_view& list);

} // namespace settings::content_filter
