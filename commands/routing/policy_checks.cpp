#include "commands/routing/policy_checks.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/tables.h"
#include "commands/vtysh/saved_file.h"
#include "front/helpers/text.h"
#include "platform/messages.h"
#include "platform/processes.h"

#include <algorithm>

namespace routing {
namespace {

// Behind a line, so that a search can tell a whole number from the beginning of a longer one.
constexpr const char* kEndMark = "*";

bool TablesHold(const std::string& text) {
    Lines lines;
    return vtysh::Ask(vtysh::QuestionLine("show tables static"), lines) &&
           std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return vtysh::Contains(line, text); });
}

// The item lines of the rule in the saved configuration. False when it has no such rule.
bool ReadRule(const std::string& header, Lines& items) {
    return vtysh::ReadBlock(
        vtysh::kZebra, [&](const std::string& line) { return line == header; }, items);
}

} // namespace

std::string RuleHeader(const std::string& name, unsigned long priority) {
    return "ip rule " + name + " " + std::to_string(priority);
}

bool IsRuleSlotFree(const std::string& name, unsigned long priority, const std::string& key) {
    Lines lines;
    if (!arguments::IsName(name) || !vtysh::Ask(vtysh::kZebra, "show ip policy " + name, lines))
        return true;
    const std::string header = RuleHeader(name, priority) + kEndMark;
    auto line = std::find_if(lines.begin(), lines.end(), [&](const std::string& candidate) {
        return vtysh::Contains(candidate + kEndMark, header);
    });
    if (line == lines.end())
        return true;
    for (++line; line != lines.end() && !vtysh::Contains(*line, "ip rule "); ++line) {
        if (vtysh::Contains(*line, " " + key + " "))
            return false;
    }
    return true;
}

bool RuleHasItem(const std::string& header, const std::string& item) {
    Lines items;
    return ReadRule(header, items) && std::any_of(items.begin(), items.end(), [&](const std::string& line) {
               return vtysh::HoldsWords(line, item);
           });
}

int CountRuleItems(const std::string& name, unsigned long priority) {
    Lines items;
    if (!ReadRule(RuleHeader(name, priority), items))
        return 0;
    return static_cast<int>(std::count_if(items.begin(), items.end(), [](const std::string& line) {
        return vtysh::Contains(line, " match ") || vtysh::Contains(line, " set ");
    }));
}

// /sbin/policy_routing rule_clear_name_number vpn 1024
void RemoveEmptyRule(const std::string& name, unsigned long priority) {
    Lines items;
    if (!ReadRule(RuleHeader(name, priority), items) || !items.empty())
        return;
    if (shell_spawn("/sbin/policy_routing", "rule_clear_name_number", name.c_str(),
                    std::to_string(priority).c_str(), nullptr) != 0)
        PrintError(Tr("failed to delete inet policy %s."), name);
}

bool IsPolicyUnreferenced(const std::string& name) {
    Lines lines;
    if (!vtysh::AskSaved(vtysh::kDgdd, lines))
        return true;
    const std::string action = "route policy " + name + kEndMark;
    return std::none_of(lines.begin(), lines.end(),
                        [&](const std::string& line) { return vtysh::Contains(line + kEndMark, action); });
}

bool CheckPolicyUnreferenced(const std::string& name) {
    return IsPolicyUnreferenced(name) ||
           Refuse(Tr("Can't delete this policy, because it is referenced by at least one dgd rule."));
}

bool TableNameExists(const std::string& table) {
    return TablesHold("Table " + ToUpper(table) + " (ID");
}

bool TableNumberExists(const std::string& number) {
    return TablesHold("(ID " + number + ")");
}

} // namespace routing
