#include "commands/routing/policy_commands.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/policy_checks.h"
#include "commands/routing/policy_show.h"
#include "commands/vtysh/daemon.h"
#include "front/helpers/settings_lock.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "platform/processes.h"

namespace routing {
namespace {

using vtysh::Lines;

// A status that no daemon gave: the program could not be run, or a signal ended it.
constexpr int kNotRun = 126;

bool IsRefusedHere() {
    return IsDisabledOnPassiveNode(gettext(kPolicyFeature));
}

bool CheckName(const std::string& name) {
    return arguments::Check({{name, arguments::IsName, "policy name"}});
}

std::string PolicyLine(const std::string& part) {
    return vtysh::ConfigureLine(vtysh::kPolicies, {part});
}

// Runs a line under the settings lock. False when the lock is refused.
bool RunLocked(const std::string& line, int& status) {
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!LockForChange(lock))
        return false;
    std::string output;
    status = corvanshell::run(line.c_str(), output);
    return true;
}

bool NoSuchPolicy(const std::string& name) {
    return Refuse(Tr("Inet policy %s does not exist"), name);
}

// `priority` is "" for all rules of the policy.
bool ConfirmClear(const std::string& name, const std::string& priority) {
    if (IsRefusedHere() || !CheckName(name) || !CheckPolicyUnreferenced(name) || !ShowPolicy(name, priority))
        return false;
    if (shell_get_user_confirmation(gettext("Delete all policy rules?")) != 0)
        return true;
    PrintInfo(Tr("Command canceled by user"));
    return false;
}

} // namespace

// /sbin/policy_routing rule_clear_name vpn
bool PolicyRuleClear(const std::string& name) {
    LogInfo("command: inet policy rule clear %s", name);
    int status = 0;
    if (!ConfirmClear(name, "") || !RunLocked("/sbin/policy_routing rule_clear_name " + name, status))
        return false;
    if (status != 0)
        return NoSuchPolicy(name);
    PrintInfo(Tr("Inet policy %s was deleted"), name);
    return true;
}

bool PolicyRuleClear(const std::string& name, unsigned long priority) {
    LogInfo("command: inet policy rule clear %s %lu", name, priority);
    int status = 0;
    if (!ConfirmClear(name, std::to_string(priority)) ||
        !RunLocked(PolicyLine("no " + RuleHeader(name, priority)), status))
        return false;
    if (status >= kNotRun)
        return Refuse(Tr("failed to clear policy rule"));
    if (status != 0)
        return NoSuchPolicy(name);
    PrintInfo(Tr("Inet policy %s %lu was deleted"), name, priority);
    return true;
}

bool PolicyActivate(const std::string& name) {
    LogInfo("command: inet policy active %s", name);
    int status = 0;
    if (IsRefusedHere() || !CheckName(name) || !RunLocked(PolicyLine("ip policy " + name), status))
        return false;
    if (status != 0)
        return NoSuchPolicy(name);
    PrintInfo(Tr("Inet policy active was set to %s"), name);
    return true;
}

bool PolicyActivateDefault() {
    LogInfo("command: inet policy active default");
    int status = 0;
    if (IsRefusedHere() || !RunLocked(PolicyLine("ip policy default"), status))
        return false;
    if (status != 0)
        return Refuse(Tr("failed to set policy active to default"));
    PrintInfo(Tr("Inet policy active was set to default"));
    return true;
}

bool ShowActivePolicy() {
    constexpr const char* label = "Current IP policy:";
    LogInfo("command: inet show policy rule active");
    if (IsRefusedHere())
        return false;
    Lines lines;
    if (vtysh::Ask(vtysh::kZebra, "show ip policy", lines)) {
        for (const std::string& line : lines) {
            const std::size_t place = line.find(label);
            const std::size_t name = place == std::string::npos
                                         ? place
                                         : line.find_first_not_of(" \r", place + std::string(label).size());
            if (name == std::string::npos)
                continue;
            PrintInfo("Current IP policy: %s", line.substr(name));
            return true;
        }
    }
    return Refuse(Tr("failed to show policy rule active."));
}

bool ShowPolicyRule(const std::string& name) {
    LogInfo("command: inet show policy rule %s", name);
    return !IsRefusedHere() && CheckName(name) && ShowPolicy(name, "");
}

bool ShowPolicyRule(const std::string& name, unsigned long priority) {
    return !IsRefusedHere() && CheckName(name) && ShowPolicy(name, std::to_string(priority));
}

bool ShowAllPolicyRules() {
    LogInfo("command: inet show policy rule all");
    return !IsRefusedHere() && ShowPolicy("", "");
}

} // namespace routing
