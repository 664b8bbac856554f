#pragma once

#include <string>

namespace routing {

// The items that a policy rule can have: what it matches, and its one action.
enum class RuleItem {
    kFrom,
    kTo,
    kInboundInterface,
    kOutboundInterface,
    kDscp,
    kTableName,
    kTableNumber,
    kTableDefault,
    kBlock,
    kReject,
};

// inet policy rule add|delete <name> <priority> ...: adds or takes away one item. `value` is the address with
// or without a prefix length, the interface, a key of DscpTable, the table's name or number; the last three
// items have none. A rule goes with its last item, which stays while the dead gateway detection needs the
// policy.
[[nodiscard]] bool PolicyRuleAdd(RuleItem item, const std::string& name, unsigned long priority,
                                 const std::string& value);
[[nodiscard]] bool PolicyRuleDelete(RuleItem item, const std::string& name, unsigned long priority,
                                    const std::string& value);

} // namespace routing
