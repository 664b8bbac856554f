#include "platform/messages.h"
#include "shell/families.h"
#include "units/content_filter/defaults.h"
#include "units/content_filter/report.h"
#include "units/content_filter/rule.h"
#include "units/content_filter/rules.h"
#include "units/content_filter/unit.h"

namespace shell {
namespace {

using namespace settings::content_filter;
using Text = const std::string&;

bool ShowMode() {
    settings::File file(kContentFilterUnit, "");
    if (!file.Load())
        return false;
    PrintInfo("content filter is %s", IsContentFilterOn(file) ? "on" : "off");
    return true;
}

// A condition that was not typed holds for all.
std::string OrAny(Text addresses) {
    return addresses.empty() ? kAnyAddress : addresses;
}

constexpr Command kCommands[] = {
    {"content-filter", "what the HTTP proxy lets through"},
    {"content-filter show", "rules and mode"},
    {"content-filter show", "shows the rules and the default actions", kCall<&ShowRules>, kShows},
    {"content-filter show rules", "shows the rules and the default actions", kCall<&ShowRules>, kShows},
    {"content-filter show mode", "says whether the filter works", kCall<&ShowMode>, kShows},
    {"content-filter generate", "writes the proxy's configuration from the rules",
     [] { return ContentFilterUnit(nullptr); }},
    {"content-filter mode <on|off>", "switches the filter on or off",
     [](Text mode) { return SetContentFilterMode(mode == "on"); }},
    {"content-filter default", "what becomes of the rest"},
    {"content-filter default request <pass|drop>", "says what becomes of requests that no rule took",
     kCall<&SetDefaultRequestAction>},
    {"content-filter default reply <pass|drop>", "says what becomes of replies that no rule took",
     kCall<&SetDefaultReplyAction>},
    {"content-filter rule", "rules, in the order in which they are tried"},
    {"content-filter rule add <pass|drop> [position <number>] name", "the name that the rule gets"},
    {"content-filter rule add <pass|drop> [position <number>] [name <text>] [source <text>] [destination "
     "<text>] "
     "[command <text>] [mime-type <text>]",
     "adds a rule, in front of the one at the position or at the end",
     [](Text action, unsigned long position, Text name, Text source, Text destination, Text command,
        Text mime_type) {
         return AddRule(position, name, OrAny(source), OrAny(destination), command, mime_type, action);
     }},
    {"content-filter rule edit <number> [action <pass|drop>] name", "the name that the rule gets"},
    {"content-filter rule edit <number> [action <pass|drop>] [name <text>] [source <text>] [destination "
     "<text>] "
     "[command <text>] [mime-type <text>]",
     "changes what is named of the rule at the position",
     [](unsigned long position, Text action, Text name, Text source, Text destination, Text command,
        Text mime_type) {
         return EditRule(position, name, source, destination, command, mime_type, action);
     }},
    {"content-filter rule move", "gives a rule another position"},
    {"content-filter rule move <number> to", "the position that it gets"},
    {"content-filter rule move name <filter-rule> to", "the position that it gets"},
    {"content-filter rule move <number> to <number>", "moves the rule at the position", kCall<&MoveRule>},
    {"content-filter rule move name <filter-rule> to <number>", "moves the rule of that name",
     kCall<&MoveRuleByName>},
    {"content-filter rule delete", "removes a rule"},
    {"content-filter rule delete <number>", "removes the rule at the position", kCall<&DeleteRule>},
    {"content-filter rule delete name <filter-rule>", "removes the rule of that name",
     kCall<&DeleteRuleByName>},
};

} // namespace

std::span<const Command> ContentFilterCommands() {
    return kCommands;
}

} // namespace shell
