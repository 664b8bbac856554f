#include "commands/routing/policy_rules.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/dscp.h"
#include "commands/routing/policy_checks.h"
#include "commands/routing/tables.h"
#include "commands/vtysh/daemon.h"
#include "front/probes/cluster.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/path_list.h"
#include "platform/processes.h"

#include <algorithm>
#include <iterator>
#include <libintl.h>

namespace routing {
namespace {

bool IsDscp(const std::string& text) {
    return DscpTable().contains(text);
}

bool IsNothing(const std::string&) {
    return true;
}

// The texts of the messages are formats of the policy's name, the priority and, where they have a third, a
// value.
struct Texts {
    const char* log;
    const char* obstacle; // the item is there already, or isn't there
    const char* success;
    const char* failure;
};

struct Row {
    RuleItem item;
    bool (*is_value)(const std::string& value);
    const char* what; // the value's name
    const char* key;  // of the slot that the item takes
    const char* text; // of the item, in front of its value
    const char* removal;
    Texts add;
    Texts remove;
};

constexpr const char* kAddFailure = "failed to create policy rule";
constexpr const char* kDeleteFailure = "failed to delete policy rule";

constexpr Row kRows[] = {
    {RuleItem::kFrom,
     arguments::IsNetwork,
     "address",
     "from",
     "match from ",
     "no match from",
     {"command: inet policy rule add %s %lu match address from %s",
      "Inet policy %s %lu match from %s already exist", "Inet policy %s %lu match from %s was created",
      kAddFailure},
     {"command: inet policy rule delete %s %lu match address from %s",
      "Inet policy %s %lu match from %s does not exist", "Inet policy %s %lu match from %s was deleted",
      kDeleteFailure}},
    {RuleItem::kTo,
     arguments::IsNetwork,
     "address",
     "to",
     "match to ",
     "no match to",
     {"command: inet policy rule add %s %lu match address to %s",
      "Inet policy %s %lu match to %s already exist", "Inet policy %s %lu match to %s was created",
      kAddFailure},
     {"command: inet policy rule delete %s %lu match address to %s",
      "Inet policy %s %lu match to %s does not exist", "Inet policy %s %lu match to %s was deleted",
      kDeleteFailure}},
    {RuleItem::kInboundInterface,
     arguments::IsInterfaceName,
     "interface",
     "inbound-interface",
     "match inbound-interface ",
     "no match inbound-interface",
     {"command: inet policy rule add %s %lu match inbound-interface %s",
      "Inet policy %s %lu match inbound-interface %s already exists",
      "Inet policy %s %lu match inbound-interface %s was created", kAddFailure},
     {"command: inet policy rule delete %s %lu match inbound-interface %s",
      "Inet policy %s %lu match inbound-interface %s does not exist",
      "Inet policy %s %lu match inbound-interface %s was deleted", kDeleteFailure}},
    {RuleItem::kOutboundInterface,
     arguments::IsInterfaceName,
     "interface",
     "outbound-interface",
     "match outbound-interface ",
     "no match outbound-interface",
     {"command: inet policy rule add %s %lu match outbound-interface %s",
      "Inet policy %s %lu match outbound-interface %s already exists",
      "Inet policy %s %lu match outbound-interface %s was created", kAddFailure},
     {"command: inet policy rule delete %s %lu match outbound-interface %s",
      "Inet policy %s %lu match outbound-interface %s does not exist",
      "Inet policy %s %lu match outbound-interface %s was deleted", "failed to delete policy rule."}},
    {RuleItem::kDscp,
     IsDscp,
     "DSCP value",
     "tos",
     "match tos ",
     "no match tos",
     {"command: inet policy rule add %s %lu match dscp %s", "Inet policy %s %lu match dscp %s already exists",
      "Inet policy %s %lu match dscp %s was created", kAddFailure},
     {"command: inet policy rule delete %s %lu match dscp %s",
      "Inet policy %s %lu match dscp %s does not exist", "Inet policy %s %lu match dscp %s was deleted",
      kDeleteFailure}},
    {RuleItem::kTableName,
     arguments::IsName,
     "table name",
     "set",
     "set table ",
     "no set table",
     {"command: inet policy rule add %s %lu table %s", "Inet policy %s %lu set table %s already exists",
      "Inet policy %s %lu set table %s was created", kAddFailure},
     {"command: inet policy rule delete %s %lu table %s", "Inet policy %s %lu set table %s does not exist",
      "Inet policy %s %lu set table %s was deleted", kDeleteFailure}},
    {RuleItem::kTableNumber,
     arguments::IsNumber,
     "table number",
     "set",
     "set table ",
     "no set table",
     {"command: inet policy rule add %s %lu table %s", "Inet policy %s %lu set table %s already exists",
      "Inet policy %s %lu set table %s was created", "Inet policy %s %lu set table %s FAILED"},
     {"command: inet policy rule delete %s %lu table %s", "Inet policy %s %lu set table %s does not exist",
      "Inet policy %s %lu set table %s was deleted", kDeleteFailure}},
    // The log text with its doubled word is the one that log searches know.
    {RuleItem::kTableDefault,
     IsNothing,
     "",
     "set",
     "set table MAIN",
     "no set table",
     {"command: inet policy rule add %s %lu table default",
      "Inet policy %s %lu set table default already exists",
      "Inet policy %s %lu set table default was created", kAddFailure},
     {"command: inet inet policy rule delete %s %lu table default",
      "Inet policy %s %lu set table default does not exist",
      "Inet policy %s %lu set table default was deleted", kDeleteFailure}},
    {RuleItem::kBlock,
     IsNothing,
     "",
     "set",
     "set blackhole",
     "no set blackhole",
     {"command: inet policy rule add %s %lu block", "Inet policy %s %lu set table block already exists",
      "Inet policy %s %lu set table block was created", kAddFailure},
     {"command: inet policy rule delete %s %lu table block",
      "Inet policy %s %lu set table block does not exist", "Inet policy %s %lu set table block was deleted",
      kDeleteFailure}},
    {RuleItem::kReject,
     IsNothing,
     "",
     "set",
     "set reject",
     "no set reject",
     {"command: inet policy rule add %s %lu reject", "Inet policy %s %lu set table reject already exists",
      "Inet policy %s %lu set table reject was created", kAddFailure},
     {"command: inet policy rule delete %s %lu table reject",
      "Inet policy %s %lu set table reject does not exist", "Inet policy %s %lu set table reject was deleted",
      kDeleteFailure}},
};

const Row& RowOf(RuleItem item) {
    return *std::find_if(std::begin(kRows), std::end(kRows),
                         [&](const Row& row) { return row.item == item; });
}

struct Command {
    const Row& row;
    const std::string& name;
    unsigned long priority;
    const std::string& value; // as typed
};

// The match rows give the policy's name once more in the place of the value when they add. Kept: users and
// scripts know the messages so.
const std::string& ShownWhenAdded(const Command& command) {
    return std::string_view(command.row.key) == "set" ? command.value : command.name;
}

bool Fail(const Command& command, const char* format, const std::string& shown) {
    shell_print_error(gettext(format), command.name.c_str(), command.priority, shown.c_str());
    return false;
}

bool Fail(const char* message) {
    shell_print_error("%s", gettext(message));
    return false;
}

// Logs the command. False when it can't be carried out here or with these arguments.
bool Begin(const Command& command, const char* log) {
    shell_log_info(log, command.name.c_str(), command.priority, command.value.c_str());
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
    return arguments::IsName(name) || Fail("failed to get table name");
}

bool CheckTable(const Command& command) {
    switch (command.row.item) {
    case RuleItem::kTableName:
        return TableNameExists(command.value) || Fail("failed to create rule. Table doesn't exist.");
    case RuleItem::kTableNumber:
        return TableNumberExists(command.value) || Fail("failed to create rule: table doesn't exists");
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
        value = UpperCase(value);
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
bool SendItem(const Command& command, const std::string& item) {
    return vtysh::Configure(vtysh::kPolicies, {RuleHeader(command.name, command.priority), item});
}

} // namespace

bool PolicyRuleAdd(RuleItem item, const std::string& name, unsigned long priority, const std::string& value) {
    const Command command{RowOf(item), name, priority, value};
    const Texts& texts = command.row.add;
    if (!Begin(command, texts.log))
        return false;
    if (!IsRuleSlotFree(name, priority, command.row.key))
        return Fail("To change, you must delete the old value");
    std::string text;
    if (!CheckTable(command) || !MakeItem(command, text))
        return false;
    if (RuleHasItem(RuleHeader(name, priority), " " + text))
        return Fail(command, texts.obstacle, ShownWhenAdded(command));
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!vtysh::LockSettings(lock))
        return false;
    if (!SendItem(command, text))
        return Fail(command, texts.failure, value);
    shell_print_info(gettext(texts.success), name.c_str(), priority, ShownWhenAdded(command).c_str());
    return true;
}

bool PolicyRuleDelete(RuleItem item, const std::string& name, unsigned long priority,
                      const std::string& value) {
    const Command command{RowOf(item), name, priority, value};
    const Texts& texts = command.row.remove;
    std::string text;
    if (!Begin(command, texts.log) || !MakeItem(command, text))
        return false;
    // The last item takes the rule with it.
    if (CountRuleItems(name, priority) < 2 && !CheckPolicyUnreferenced(name))
        return false;
    if (!RuleHasItem(RuleHeader(name, priority), " " + text))
        return Fail(command, texts.obstacle, value);
    lock_tool::FileLock lock(path_list::settings_lock);
    if (!vtysh::LockSettings(lock))
        return false;
    if (!SendItem(command, command.row.removal))
        return Fail(command, texts.failure, value);
    RemoveEmptyRule(name, priority);
    shell_print_info(gettext(texts.success), name.c_str(), priority, value.c_str());
    return true;
}

} // namespace routing
