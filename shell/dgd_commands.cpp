#include "commands/dgd/commands.h"
#include "shell/families.h"

namespace shell {
namespace {

using namespace dgd;
using Text = const std::string&;

constexpr Command kCommands[] = {
    {"inet dgd", "dead gateway detection"},
    {"inet dgd mode <on|off>", "starts or stops the detection, now and with the appliance", kCall<&SetMode>},
    {"inet dgd configuration", "timing and log"},
    {"inet dgd configuration response-time <number>", "how long an answer may take, 1 to 120 seconds",
     kCall<&SetResponseTime>},
    {"inet dgd configuration interval-time <number>", "time between two checks, 1 to 120 seconds",
     kCall<&SetIntervalTime>},
    {"inet dgd configuration retries-count <number>", "failed checks before a next hop is down, 1 to 10",
     kCall<&SetRetriesCount>},
    {"inet dgd configuration syslog-level <level>", "sets what is logged", kCall<&SetSyslogLevel>},
    {"inet dgd configuration default", "sets the three numbers and the level to 3, after a question",
     kCall<&SetDefaults>},
    {"inet dgd next-hop", "watched gateways"},
    {"inet dgd next-hop add", "watches a gateway"},
    {"inet dgd next-hop add <new-name> address", "watches a gateway by its address"},
    {"inet dgd next-hop add <new-name> address <address> [test-address <address>] <check|no-check> "
     "[<check-type>]",
     "watches a gateway by its address; without a test address it is tested itself; check needs a type",
     [](Text name, Text address, Text test_address, Text check, Text type) {
         return AddNextHop({name, address, test_address, check, type});
     }},
    {"inet dgd next-hop add <new-name> interface", "watches the gateway behind an interface"},
    {"inet dgd next-hop add <new-name> interface <dgd-interface> [test-address <address>] <check|no-check> "
     "[<check-type>]",
     "watches the gateway behind an interface, modem being that of a USB modem; check needs a type",
     [](Text name, Text interface, Text test_address, Text check, Text type) {
         return AddInterfaceNextHop({name, interface, test_address, check, type});
     }},
    {"inet dgd next-hop delete name <next-hop-name>", "removes it, unless a rule refers to it",
     kCall<&DeleteNextHop>},
    {"inet dgd rule", "what a change of next hops brings"},
    {"inet dgd rule add", "adds a line to a rule, and the rule with its first line"},
    {"inet dgd rule add <dgd-rule> match next-hop <next-hop-name> <up|down>",
     "the rule acts when the next hop is in this state", kCall<&AddRuleMatch>},
    {"inet dgd rule add <dgd-rule> action-priority", "what the rule does"},
    {"inet dgd rule add <dgd-rule> action-priority <action-priority> service", "what the rule does"},
    {"inet dgd rule add <dgd-rule> action-priority <action-priority> service route command policy active "
     "<policy>",
     "the rule activates a policy", kCall<&AddRulePolicyAction>},
    {"inet dgd rule add <dgd-rule> action-priority <action-priority> service log <log-text>",
     "the rule logs a text", kCall<&AddRuleLogAction>},
    {"inet dgd rule delete", "takes a line away, and the rule with its last line"},
    {"inet dgd rule delete <dgd-rule> match next-hop <next-hop-name> <up|down>", "takes the line away",
     kCall<&DeleteRuleMatch>},
    {"inet dgd rule delete <dgd-rule> action-priority <action-priority>", "takes the action away",
     kCall<&DeleteRuleAction>},
    {"inet dgd rule clear <dgd-rule>", "removes the rule, after a question", kCall<&ClearRule>},
    {"inet show dgd", "dead gateway detection"},
    {"inet show dgd next-hop [<next-hop-name>]", "next hops, what their checks found and since when",
     kCall<&ShowNextHop>, kShows},
    {"inet show dgd rule [<dgd-rule>]", "shows the rules", kCall<&ShowRule>, kShows},
    {"inet show dgd configuration", "whether it runs, its settings, and how much is configured",
     kCall<&ShowConfiguration>, kShows},
};

} // namespace

std::span<const Command> DgdCommands() {
    return kCommands;
}

} // namespace shell
