// The commands about next hops.

#include "commands/arguments/arguments.h"
#include "commands/dgd/command_frame.h"
#include "commands/dgd/commands.h"
#include "platform/messages.h"

namespace dgd {
namespace {

std::string AddLog(const NewNextHop& added, const char* place_word) {
    return "command: inet dgd next-hop add " + added.name + place_word + added.place +
           (added.test_address.empty() ? "" : " test-address " + added.test_address) + " " + added.check +
           " " + added.type;
}

bool CheckArguments(const NewNextHop& added, bool (*is_place)(const std::string&), const char* place) {
    return arguments::Check({{added.name, arguments::IsDgdText, "next-hop name"},
                             {added.place, is_place, place},
                             {added.test_address, arguments::IsAddress, "test address", true},
                             {added.check, arguments::IsDgdText, "check word"},
                             {added.type, arguments::IsDgdText, "check type", added.check == "no-check"}});
}

Outcome AddByAddress(DgdConfig& config, const NewNextHop& added) {
    if (!config.CheckNextHopAddr(added))
        return Outcome::kRefused;
    if (config.NextHopExists(added.name))
        return Refused(Tr("Next-hop with this name already exists"));
    return Sent(config.AddStatic(added));
}

Outcome AddByInterface(DgdConfig& config, const NewNextHop& added) {
    if (!config.CheckNextHopIface(added))
        return Outcome::kRefused;
    if (config.IfaceInUse(added.place))
        return Refused(Tr("Next-hop with the interface is already in use. Delete it firstly"));
    return Sent(config.AddDynamic(added));
}

Outcome DeleteOfAnyKind(DgdConfig& config, const std::string& name) {
    for (const std::string kind : {"next-hop", "dyn-next-hop"}) {
        if (ConfigSectionHas(kind + " " + name, ""))
            return Sent(config.DeleteNextHop(kind, name));
    }
    return Refused(Tr("DGD command can not be executed."));
}

} // namespace

bool AddNextHop(const NewNextHop& added) {
    return RunCommand(
        {.log = AddLog(added, " address "),
         .check_arguments = [&] { return CheckArguments(added, arguments::IsAddress, "address"); },
         .run = [&](DgdConfig& config) { return AddByAddress(config, added); }});
}

bool AddInterfaceNextHop(const NewNextHop& added) {
    return RunCommand(
        {.log = AddLog(added, " interface "),
         .check_arguments = [&] { return CheckArguments(added, arguments::IsInterfaceName, "interface"); },
         .run = [&](DgdConfig& config) { return AddByInterface(config, added); }});
}

bool DeleteNextHop(const std::string& name) {
    const auto check = [&] { return arguments::Check({{name, arguments::IsDgdText, "next-hop name"}}); };
    return RunCommand({.log = "command: inet dgd next-hop delete name " + name,
                       .check_arguments = check,
                       .run = [&](DgdConfig& config) { return DeleteOfAnyKind(config, name); }});
}

// The listing tells what is configured with the dead gateway detection off, too.
bool ShowNextHop(const std::string& name) {
    return RunCommand({.log = "command: inet show dgd next-hop " + (name.empty() ? "all" : name),
                       .needs = Needs::kAnswers,
                       .run = [&](DgdConfig& config) {
                           if (!config.enabled)
                               PrintInfo(Tr("DGD disabled."));
                           return Show(config, config.ShowNextHops(name));
                       }});
}

} // namespace dgd
