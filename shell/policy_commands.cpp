#include "commands/routing/policy_commands.h"

#include "commands/routing/policy_rules.h"
#include "shell/families.h"

namespace shell {
namespace {

using namespace routing;
using Text = const std::string&;

// The rows of the items that a rule may have.
template <RuleItem item>
constexpr auto kAdd =
    [](Text name, unsigned long priority, Text value) { return PolicyRuleAdd(item, name, priority, value); };
template <RuleItem item>
constexpr auto kAddBare =
    [](Text name, unsigned long priority) { return PolicyRuleAdd(item, name, priority, ""); };
template <RuleItem item>
constexpr auto kDelete = [](Text name, unsigned long priority, Text value) {
    return PolicyRuleDelete(item, name, priority, value);
};
template <RuleItem item>
constexpr auto kDeleteBare =
    [](Text name, unsigned long priority) { return PolicyRuleDelete(item, name, priority, ""); };

constexpr Command kCommands[] = {
    {"inet policy", "policy routing"},
    {"inet policy rule", "rules of policies"},
    {"inet policy rule add", "adds an item to a rule, and the rule with its first item"},
    {"inet policy rule add <policy> <priority> match", "which packets the rule is for"},
    {"inet policy rule add <policy> <priority> match address", "the packets' addresses"},
    {"inet policy rule add <policy> <priority> match address from <prefix>",
     "the rule is for packets from there", kAdd<RuleItem::kFrom>},
    {"inet policy rule add <policy> <priority> match address to <prefix>", "the rule is for packets to there",
     kAdd<RuleItem::kTo>},
    {"inet policy rule add <policy> <priority> match inbound-interface <interface>",
     "the rule is for packets that come in there", kAdd<RuleItem::kInboundInterface>},
    {"inet policy rule add <policy> <priority> match outbound-interface <interface>",
     "the rule is for packets that go out there", kAdd<RuleItem::kOutboundInterface>},
    {"inet policy rule add <policy> <priority> match dscp <dscp>", "the rule is for packets of a DSCP class",
     kAdd<RuleItem::kDscp>},
    {"inet policy rule add <policy> <priority> table", "the table that routes them"},
    {"inet policy rule add <policy> <priority> table default", "its packets are routed by the main table",
     kAddBare<RuleItem::kTableDefault>},
    {"inet policy rule add <policy> <priority> table <table-number>", "its packets are routed by this table",
     kAdd<RuleItem::kTableNumber>},
    {"inet policy rule add <policy> <priority> table <table-name>", "its packets are routed by this table",
     kAdd<RuleItem::kTableName>},
    {"inet policy rule add <policy> <priority> block", "its packets are dropped", kAddBare<RuleItem::kBlock>},
    {"inet policy rule add <policy> <priority> reject", "its packets are dropped with an answer",
     kAddBare<RuleItem::kReject>},
    {"inet policy rule delete", "takes an item away, and the rule with its last item"},
    {"inet policy rule delete <policy> <used-priority> match", "what the rule matches"},
    {"inet policy rule delete <policy> <used-priority> match address", "the packets' addresses"},
    {"inet policy rule delete <policy> <used-priority> match address from <prefix>", "takes the source away",
     kDelete<RuleItem::kFrom>},
    {"inet policy rule delete <policy> <used-priority> match address to <prefix>",
     "takes the destination away", kDelete<RuleItem::kTo>},
    {"inet policy rule delete <policy> <used-priority> match inbound-interface <interface>",
     "takes the inbound interface away", kDelete<RuleItem::kInboundInterface>},
    {"inet policy rule delete <policy> <used-priority> match outbound-interface <interface>",
     "takes the outbound interface away", kDelete<RuleItem::kOutboundInterface>},
    {"inet policy rule delete <policy> <used-priority> match dscp <dscp>", "takes the DSCP class away",
     kDelete<RuleItem::kDscp>},
    {"inet policy rule delete <policy> <used-priority> table", "what becomes of the packets"},
    {"inet policy rule delete <policy> <used-priority> table default", "takes the main table away",
     kDeleteBare<RuleItem::kTableDefault>},
    {"inet policy rule delete <policy> <used-priority> table block", "its packets are not dropped any more",
     kDeleteBare<RuleItem::kBlock>},
    {"inet policy rule delete <policy> <used-priority> table reject", "its packets are not rejected any more",
     kDeleteBare<RuleItem::kReject>},
    {"inet policy rule delete <policy> <used-priority> table <table-number>", "takes the table away",
     kDelete<RuleItem::kTableNumber>},
    {"inet policy rule delete <policy> <used-priority> table <table-name>", "takes the table away",
     kDelete<RuleItem::kTableName>},
    {"inet policy rule clear", "removes a policy or a rule"},
    {"inet policy rule clear <policy>", "removes the policy, after a question",
     [](Text name) { return PolicyRuleClear(name); }},
    {"inet policy rule clear <policy> <used-priority>", "removes one rule, after a question",
     [](Text name, unsigned long priority) { return PolicyRuleClear(name, priority); }},
    {"inet policy active", "chooses the active policy"},
    {"inet policy active default", "activates none of the policies, so that the main table alone routes",
     kCall<&PolicyActivateDefault>},
    {"inet policy active <policy>", "activates the policy", kCall<&PolicyActivate>},
    {"inet show policy", "policies and their rules"},
    {"inet show policy rule", "policies and their rules"},
    {"inet show policy rule active", "names the active policy", kCall<&ShowActivePolicy>, kShows},
    {"inet show policy rule all", "shows the rules of all policies", kCall<&ShowAllPolicyRules>, kShows},
    {"inet show policy rule <policy>", "shows the rules of the policy",
     [](Text name) { return ShowPolicyRule(name); }, kShows},
    {"inet show policy rule <policy> <used-priority>", "shows one rule",
     [](Text name, unsigned long priority) { return ShowPolicyRule(name, priority); }, kShows},
};

} // namespace

std::span<const Command> PolicyCommands() {
    return kCommands;
}

} // namespace shell
