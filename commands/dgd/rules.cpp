// The rules of a DgdConfig.

#include "commands/dgd/dgd_config.h"
#include "commands/dgd/words.h"
#include "commands/vtysh/daemon.h"
#include "platform/messages.h"

namespace dgd {
namespace {

constexpr std::size_t kRuleLength = 79;
constexpr const char* kIndent = "      ";

// The line as the commands spell it.
std::string FormatLine(const Words& words) {
    if (words.size() > 3 && words[0] == "action" && words[2] == "route" && words[3] == "policy")
        return "action priority " + words[1] + " service route command policy active " + JoinWords(words, 4);
    if (words.size() > 2 && words[0] == "action" && words[2] == "zlog")
        return "action priority " + words[1] + " service log command " + JoinWords(words, 3);
    return JoinWords(words, 0);
}

} // namespace

bool DgdConfig::CheckPolicy(const std::string& policy) {
    Lines lines;
    if (has_refused_ || !Took(vtysh::Ask(vtysh::QuestionLine("show ip policy " + policy), lines)))
        return RefuseInLog("Failed dgd command \"show ip policy %s\".", policy);
    // The quotation mark has no partner. Kept: it is the message that users know.
    return lines.empty() || !lines.front().starts_with("% No such IP policy") ||
           Refuse(Tr("No such IP policy %s\"."), policy);
}

bool DgdConfig::AddMatch(const std::string& rule, const std::string& name, const std::string& state) {
    return Change({"dgd-rule " + rule, "match next-hop " + name + " state " + state});
}

bool DgdConfig::DeleteMatch(const std::string& rule, const std::string& name) {
    return Change({"dgd-rule " + rule, "no match next-hop " + name}) && RemoveEmptyRule(rule);
}

bool DgdConfig::AddPolicyAction(const std::string& rule, unsigned long priority, const std::string& policy) {
    return CheckPolicy(policy) &&
           Change({"dgd-rule " + rule, "action " + std::to_string(priority) + " route policy " + policy});
}

bool DgdConfig::AddLogAction(const std::string& rule, unsigned long priority, const std::string& text) {
    return Change({"dgd-rule " + rule, "action " + std::to_string(priority) + " zlog " + text});
}

bool DgdConfig::DeleteAction(const std::string& rule, unsigned long priority) {
    return Change({"dgd-rule " + rule, "no action " + std::to_string(priority)}) && RemoveEmptyRule(rule);
}

bool DgdConfig::ClearRule(const std::string& rule) {
    return Change({"no dgd-rule " + rule});
}

bool DgdConfig::RemoveEmptyRule(const std::string& rule) {
    const std::string section = "dgd-rule " + rule;
    if (!ConfigSectionHas(section, "") || ConfigSectionHas(section, "match next-hop") ||
        ConfigSectionHas(section, "action"))
        return true;
    return ClearRule(rule);
}

std::string DgdConfig::ShowRules(const std::string& name) {
    Lines lines;
    if (!AskConfiguration(lines))
        return "";
    std::string rules;
    int count = 0;
    bool inside = false;
    for (const std::string& line : lines) {
        const Words words = SplitWords(line);
        if (words.size() > 1 && words[0] == "dgd-rule") {
            inside = name.empty() || words[1] == name;
            count += inside ? 1 : 0;
            rules += inside ? "rule " + words[1] + ":\n" : "";
        } else if (words.empty() || words[0] == "!") {
            inside = false;
        } else if (inside) {
            rules += kIndent + FormatLine(words) + "\n";
        }
    }
    if (count == 0)
        return "\n DGD rule(s) " + name + " configured: 0\n\n";
    return " Rule(DGD) Name\n       Values\n" + std::string(kRuleLength, '-') + "\n" + rules +
           " DGD rule(s)configured: " + std::to_string(count) + "\n";
}

} // namespace dgd
