#include "commands/routing/policy_rules.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/dscp.h"
#include "commands/routing/policy_checks.h"
#include "commands/routing/policy_items.h"
#include "commands/routing/tables.h"
#include "commands/vtysh/daemon.h"
#include "front/helpers/settings_lock.h"
#include "front/helpers/text.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"
#include "platform/network.h"
#include "platform/path_list.h"
#include "records/conf_struct.h"

#include <algorithm>

namespace routing {
namespace {

struct Command {
    const ItemRow& row;
    const std::string& name;
    unsigned long priority;
    const std::string& value; // as typed
};

// The match rows give the policy's name once more in the place of the value when they add. Kept: users and
// scripts know the messages so.
const std::string& ShownWhenAdded(const Command& command) {
    return std::string_view(command.row.key) == "set" ? command.value : command.name;
}

bool Fail(const Command& command, const ItemFormat& format, const std::string& shown) {
    format.Fill([](const auto& text, const auto&... arguments) { PrintError(text, arguments...); },
                command.name, command.priority, shown);
    return false;
}

// Logs the command. False when it can't be carried out here or with these arguments.
bool Begin(const Command& command, const ItemFormat& log) {
    log.Fill([](const auto& text, const auto&... arguments) { LogInfo(text, arguments...); }, command.name,
             command.priority, command.value);
    return !IsDisabledOnPassiveNode(gettext(kPolicyFeature)) &&
           arguments::Check({{command.name, arguments::IsName, "policy name"},
                             {command.value, command.row.is_value, command.row.what}});
}

bool FindTableName(const std::string& number, std::string& name) {
    Lines lines;
    name.clear();
    if (ListTables(lines)) {
        for (const std::string& line : lines) {
            if (line.starts_with("Table ") && TakeTableNumber(line) == number)
                name = line.substr(6, line.find(' ', 6) - 6);
        }
    }
    // The name comes from outside and goes into a shell line.
    return arguments::IsName(name) || Refuse(Tr("failed to get table name"));
}

bool CheckTable(const Command& command) {
    switch (command.row.item) {
    case RuleItem::kTableName:
        return TableNameExists(command.value) || Refuse(Tr("failed to create rule. Table doesn't exist."));
    case RuleItem::kTableNumber:
        return TableNumberExists(command.value) || Refuse(Tr("failed to create rule: table doesn't exists"));
    default:
        return true;
    }
}

// The item's text as the daemon stores it: "match tos 184", "set table VPN".
bool MakeItem(const Command& command, std::string& item) {
    std::string value = command.value;
    switch (command.row.item) {
    case RuleItem::kDscp:
        value = std::to_string(DscpTable().at(value));
        break;
    case RuleItem::kTableName:
        value = ToUpper(value);
        break;
    case RuleItem::kTableNumber:
        if (!FindTableName(command.value, value))
            return false;
        break;
    case RuleItem::kTableDefault:
    case RuleItem::kBlock:
    case RuleItem::kReject:
        value.clear();
        break;
    default:
        break;
    }
    item = command.row.text + value;
    return true;
}

// /usr/bin/vtysh -d zebra -c "configure terminal" -c "ip rule vpn 1024" -c "match from 10.0.0.1" -c "exit"
//     -c "write file"
bool SendLocked(const Command& command, const std::string& item, const ItemFormat& failure,
                lock_tool::FileLock& lock) {
    return LockForChange(lock) &&
           (vtysh::Configure(vtysh::kPolicies, {RuleHeader(command.name, command.priority), item}) ||
            Fail(command, failure, command.value));
}

void Tell(const Command& command, const ItemFormat& format, const std::string& shown) {
    format.Fill([](const auto& text, const auto&... arguments) { PrintInfo(text, arguments...); },
                command.name, command.priority, shown);
}

bool Create(const Command& command, const std::string& item) {
    const ItemTexts& texts = command.row.add;
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!SendLocked(command, item, texts.failure, lock))
        return false;
    Tell(command, texts.success, ShownWhenAdded(command));
    return true;
}

// The daemon takes any name, also one that was mistyped. An interface may still come, so that it is no
// refusal.
void WarnOfInterface(const Command& command) {
    const RuleItem item = command.row.item;
    if (item != RuleItem::kInboundInterface && item != RuleItem::kOutboundInterface)
        return;
    const corvanshell::CConfStruct record(path_list::local_settings, true);
    const auto present = corvanshell::get_int_list();
    if (record.IsWhole() && !record.Interfaces().contains(command.value) &&
        std::find(present.begin(), present.end(), command.value) == present.end())
        PrintWarning(Tr("there is no interface %s"), command.value);
}

} // namespace

bool PolicyRuleAdd(RuleItem item, const std::string& name, unsigned long priority, const std::string& value) {
    const Command command{RowOf(item), name, priority, value};
    const ItemTexts& texts = command.row.add;
    if (!Begin(command, texts.log))
        return false;
    if (!IsRuleSlotFree(name, priority, command.row.key))
        return Refuse(Tr("To change, you must delete the old value"));
    std::string text;
    if (!CheckTable(command) || !MakeItem(command, text))
        return false;
    if (RuleHasItem(RuleHeader(name, priority), " " + text))
        return Fail(command, texts.obstacle, ShownWhenAdded(command));
    if (!Create(command, text))
        return false;
    WarnOfInterface(command);
    return true;
}

bool PolicyRuleDelete(RuleItem item, const std::string& name, unsigned long priority,
                      const std::string& value) {
    const Command command{RowOf(item), name, priority, value};
    const ItemTexts& texts = command.row.remove;
    std::string text;
    if (!Begin(command, texts.log) || !MakeItem(command, text))
        return false;
    // The last item takes the rule with it.
    if (CountRuleItems(name, priority) < 2 && !CheckPolicyUnreferenced(name))
        return false;
    if (!RuleHasItem(RuleHeader(name, priority), " " + text))
        return Fail(command, texts.obstacle, value);
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!SendLocked(command, command.row.removal, texts.failure, lock))
        return false;
    RemoveEmptyRule(name, priority);
    Tell(command, texts.success, value);
    return true;
}

} // namespace routing
