#pragma once

#include "settings/node.h"

#include <string>

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

// The element of each value but the name, which is an attribute, in the order of the file.
struct RuleField {
    const char* element;
    std::string RuleText::*value;
};

constexpr RuleField kRuleFields[] = {
    {"source", &RuleText::source},        {"destination", &RuleText::destination},
    {"http-command", &RuleText::command}, {"mime-type", &RuleText::mime_type},
    {"action", &RuleText::action},
};

constexpr const char* kAnyAddress = "@any";

RuleText ReadRule(Node rule);

// Whether the values can stand in the proxy's configuration without becoming directives of their own. The
// name stands in a comment. On false, `fault` names the value that can't.
[[nodiscard]] bool IsConfigurable(const RuleText& rule, std::string& fault);

} // namespace settings::content_filter
