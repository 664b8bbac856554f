#include "commands/routing/policy_items.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/dscp.h"

#include <algorithm>
#include <iterator>

namespace routing {
namespace {

bool IsDscp(const std::string& text) {
    return DscpTable().contains(text);
}

bool IsNothing(const std::string&) {
    return true;
}

constexpr ItemFormat kAddFailure = Tr("failed to create policy rule");
constexpr ItemFormat kDeleteFailure = Tr("failed to delete policy rule");

constexpr ItemRow kRows[] = {
    {RuleItem::kFrom,
     arguments::IsNetwork,
     "address",
     "from",
     "match from ",
     "no match from",
     {"command: inet policy rule add %s %lu match address from %s",
      Tr("Inet policy %s %lu match from %s already exist"),
      Tr("Inet policy %s %lu match from %s was created"), kAddFailure},
     {"command: inet policy rule delete %s %lu match address from %s",
      Tr("Inet policy %s %lu match from %s does not exist"),
      Tr("Inet policy %s %lu match from %s was deleted"), kDeleteFailure}},
    {RuleItem::kTo,
     arguments::IsNetwork,
     "address",
     "to",
     "match to ",
     "no match to",
     {"command: inet policy rule add %s %lu match address to %s",
      Tr("Inet policy %s %lu match to %s already exist"), Tr("Inet policy %s %lu match to %s was created"),
      kAddFailure},
     {"command: inet policy rule delete %s %lu match address to %s",
      Tr("Inet policy %s %lu match to %s does not exist"), Tr("Inet policy %s %lu match to %s was deleted"),
      kDeleteFailure}},
    {RuleItem::kInboundInterface,
     arguments::IsInterfaceName,
     "interface",
     "inbound-interface",
     "match inbound-interface ",
     "no match inbound-interface",
     {"command: inet policy rule add %s %lu match inbound-interface %s",
      Tr("Inet policy %s %lu match inbound-interface %s already exists"),
      Tr("Inet policy %s %lu match inbound-interface %s was created"), kAddFailure},
     {"command: inet policy rule delete %s %lu match inbound-interface %s",
      Tr("Inet policy %s %lu match inbound-interface %s does not exist"),
      Tr("Inet policy %s %lu match inbound-interface %s was deleted"), kDeleteFailure}},
    {RuleItem::kOutboundInterface,
     arguments::IsInterfaceName,
     "interface",
     "outbound-interface",
     "match outbound-interface ",
     "no match outbound-interface",
     {"command: inet policy rule add %s %lu match outbound-interface %s",
      Tr("Inet policy %s %lu match outbound-interface %s already exists"),
      Tr("Inet policy %s %lu match outbound-interface %s was created"), kAddFailure},
     {"command: inet policy rule delete %s %lu match outbound-interface %s",
      Tr("Inet policy %s %lu match outbound-interface %s does not exist"),
      Tr("Inet policy %s %lu match outbound-interface %s was deleted"), Tr("failed to delete policy rule.")}},
    {RuleItem::kDscp,
     IsDscp,
     "DSCP value",
     "tos",
     "match tos ",
     "no match tos",
     {"command: inet policy rule add %s %lu match dscp %s",
      Tr("Inet policy %s %lu match dscp %s already exists"),
      Tr("Inet policy %s %lu match dscp %s was created"), kAddFailure},
     {"command: inet policy rule delete %s %lu match dscp %s",
      Tr("Inet policy %s %lu match dscp %s does not exist"),
      Tr("Inet policy %s %lu match dscp %s was deleted"), kDeleteFailure}},
    {RuleItem::kTableName,
     arguments::IsName,
     "table name",
     "set",
     "set table ",
     "no set table",
     {"command: inet policy rule add %s %lu table %s", Tr("Inet policy %s %lu set table %s already exists"),
      Tr("Inet policy %s %lu set table %s was created"), kAddFailure},
     {"command: inet policy rule delete %s %lu table %s",
      Tr("Inet policy %s %lu set table %s does not exist"), Tr("Inet policy %s %lu set table %s was deleted"),
      kDeleteFailure}},
    {RuleItem::kTableNumber,
     arguments::IsNumber,
     "table number",
     "set",
     "set table ",
     "no set table",
     {"command: inet policy rule add %s %lu table %s", Tr("Inet policy %s %lu set table %s already exists"),
      Tr("Inet policy %s %lu set table %s was created"), Tr("Inet policy %s %lu set table %s FAILED")},
     {"command: inet policy rule delete %s %lu table %s",
      Tr("Inet policy %s %lu set table %s does not exist"), Tr("Inet policy %s %lu set table %s was deleted"),
      kDeleteFailure}},
    // The log text with its doubled word is the one that log searches know.
    {RuleItem::kTableDefault,
     IsNothing,
     "",
     "set",
     "set table MAIN",
     "no set table",
     {"command: inet policy rule add %s %lu table default",
      Tr("Inet policy %s %lu set table default already exists"),
      Tr("Inet policy %s %lu set table default was created"), kAddFailure},
     {"command: inet inet policy rule delete %s %lu table default",
      Tr("Inet policy %s %lu set table default does not exist"),
      Tr("Inet policy %s %lu set table default was deleted"), kDeleteFailure}},
    {RuleItem::kBlock,
     IsNothing,
     "",
     "set",
     "set blackhole",
     "no set blackhole",
     {"command: inet policy rule add %s %lu block", Tr("Inet policy %s %lu set table block already exists"),
      Tr("Inet policy %s %lu set table block was created"), kAddFailure},
     {"command: inet policy rule delete %s %lu table block",
      Tr("Inet policy %s %lu set table block does not exist"),
      Tr("Inet policy %s %lu set table block was deleted"), kDeleteFailure}},
    {RuleItem::kReject,
     IsNothing,
     "",
     "set",
     "set reject",
     "no set reject",
     {"command: inet policy rule add %s %lu reject", Tr("Inet policy %s %lu set table reject already exists"),
      Tr("Inet policy %s %lu set table reject was created"), kAddFailure},
     {"command: inet policy rule delete %s %lu table reject",
      Tr("Inet policy %s %lu set table reject does not exist"),
      Tr("Inet policy %s %lu set table reject was deleted"), kDeleteFailure}},
};

} // namespace

const ItemRow& RowOf(RuleItem item) {
    return *std::find_if(std::begin(kRows), std::end(kRows),
                         [&](const ItemRow& row) { return row.item == item; });
}

} // namespace routing
