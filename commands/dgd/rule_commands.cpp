// The commands about rules.

#include "commands/arguments/arguments.h"
#include "commands/dgd/command_frame.h"
#include "commands/dgd/commands.h"
#include "platform/messages.h"

namespace dgd {
namespace {

constexpr format::Translated kNotExecuted = Tr("DGD command can not be executed.");

std::string Section(const std::string& rule) {
    return "dgd-rule " + rule;
}

std::string ActionWords(unsigned long priority) {
    return "action " + std::to_string(priority);
}

bool CheckRuleName(const std::string& rule) {
    return arguments::Check({{rule, arguments::IsDgdText, "rule name"}});
}

// A rule that is there and has no lines.
bool IsEmptyRule(const std::string& rule) {
    return ConfigSectionHas(Section(rule), "") && !ConfigSectionHas(Section(rule), "match next-hop") &&
           !ConfigSectionHas(Section(rule), "action");
}

bool HasLine(const std::string& rule, const std::string& words) {
    return ConfigSectionHas(Section(rule), words);
}

// The line to be deleted is not there.
Outcome RefuseMissing(const std::string& rule) {
    return IsEmptyRule(rule) ? Refused(Tr("DGD can't delete empty rule.")) : Refused(kNotExecuted);
}

// The frame of a command about one match line.
bool RunMatch(const char* verb, const std::string& rule, const std::string& next_hop,
              const std::string& state,
              const std::function<Outcome(DgdConfig&, const std::string& words)>& run) {
    return RunCommand({.log = std::string("command: inet dgd rule ") + verb + " " + rule +
                              " match next-hop " + next_hop + " " + state,
                       .check_arguments =
                           [&] {
                               return arguments::Check({{rule, arguments::IsDgdText, "rule name"},
                                                        {next_hop, arguments::IsDgdText, "next-hop name"},
                                                        {state, arguments::IsDgdText, "state"}});
                           },
                       .run = [&](DgdConfig& config) { return run(config, next_hop + " state " + state); }});
}

// One kind of action: how it is typed and how the daemon spells it.
struct ActionKind {
    const char* log;
    const char* log_end;
    const char* daemon;
    bool (*is_value)(const std::string& value);
    const char* what;
    bool (DgdConfig::*add)(const std::string& rule, unsigned long priority, const std::string& value);
};

constexpr ActionKind kPolicyAction{" service route command policy active ",
                                   " ",
                                   "route policy ",
                                   arguments::IsName,
                                   "policy name",
                                   &DgdConfig::AddPolicyAction};
constexpr ActionKind kLogAction{" service log ",      "",         "zlog ",
                                arguments::IsDgdText, "log text", &DgdConfig::AddLogAction};

bool AddAction(const ActionKind& kind, const std::string& rule, unsigned long priority,
               const std::string& value) {
    return RunCommand({.log = "command: inet dgd rule add " + rule + " action-priority " +
                              std::to_string(priority) + kind.log + value + kind.log_end,
                       .check_arguments =
                           [&] {
                               return arguments::Check({{rule, arguments::IsDgdText, "rule name"},
                                                        {value, kind.is_value, kind.what}});
                           },
                       .run =
                           [&](DgdConfig& config) {
                               if (HasLine(rule, kind.daemon + value))
                                   return Refused(Tr("DGD command can not be executed. This action already "
                                                     "exists in the rule"));
                               if (HasLine(rule, ActionWords(priority)))
                                   return Refused(kNotExecuted);
                               return Sent((config.*kind.add)(rule, priority, value));
                           }});
}

} // namespace

bool AddRuleMatch(const std::string& rule, const std::string& next_hop, const std::string& state) {
    return RunMatch("add", rule, next_hop, state, [&](DgdConfig& config, const std::string& words) {
        return HasLine(rule, words) ? Refused(kNotExecuted) : Sent(config.AddMatch(rule, next_hop, state));
    });
}

bool DeleteRuleMatch(const std::string& rule, const std::string& next_hop, const std::string& state) {
    return RunMatch("delete", rule, next_hop, state, [&](DgdConfig& config, const std::string& words) {
        return HasLine(rule, words) ? Sent(config.DeleteMatch(rule, next_hop)) : RefuseMissing(rule);
    });
}

bool AddRulePolicyAction(const std::string& rule, unsigned long priority, const std::string& policy) {
    return AddAction(kPolicyAction, rule, priority, policy);
}

bool AddRuleLogAction(const std::string& rule, unsigned long priority, const std::string& text) {
    return AddAction(kLogAction, rule, priority, text);
}

bool DeleteRuleAction(const std::string& rule, unsigned long priority) {
    return RunCommand({.log = "command: inet dgd rule delete " + rule + " action-priority " +
                              std::to_string(priority) + " ",
                       .check_arguments = [&] { return CheckRuleName(rule); },
                       .run =
                           [&](DgdConfig& config) {
                               return HasLine(rule, ActionWords(priority))
                                          ? Sent(config.DeleteAction(rule, priority))
                                          : RefuseMissing(rule);
                           }});
}

bool ClearRule(const std::string& rule) {
    return RunCommand(
        {.log = "command: inet dgd rule clear " + rule,
         .check_arguments = [&] { return CheckRuleName(rule); },
         .run =
             [&](DgdConfig& config) {
                 if (shell_get_user_confirmation(gettext("Do you want to clear this rule?")) == 0) {
                     PrintInfo(Tr("You have cancelled rule %s clear."), rule);
                     return Outcome::kRefused;
                 }
                 return HasLine(rule, "") ? Sent(config.ClearRule(rule)) : Refused(kNotExecuted);
             }});
}

bool ShowRule(const std::string& name) {
    return RunCommand({.log = "command: inet show dgd rule " + (name.empty() ? "all" : name),
                       .run = [&](DgdConfig& config) { return Show(config, config.ShowRules(name)); }});
}

} // namespace dgd
