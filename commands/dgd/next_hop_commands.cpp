// The commands about next hops.

#include "commands/arguments/arguments.h"
#include "commands/dgd/command_frame.h"
#include "commands/dgd/commands.h"
#include "platform/console.h"

#include <libintl.h>

namespace dgd {
namespace {

struct NewNextHop {
    const std::string& name;
    const std::string& place; // address or interface
    const std::string& test_address;
    const std::string& check;
    const std::string& type;
};

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
    if (!config.CheckNextHopAddr(added.name, added.place, added.check, added.type, added.test_address))
        return Outcome::kRefused;
    if (config.NextHopExists(added.name))
        return Refuse("Next-hop with this name already exists");
    return Sent(config.AddStatic(added.name, added.place, added.test_address, added.check, added.type));
}

Outcome AddByInterface(DgdConfig& config, const NewNextHop& added) {
    if (!config.CheckNextHopIface(added.name, added.place, added.check, added.type, added.test_address))
        return Outcome::kRefused;
    if (config.IfaceInUse(added.place))
        return Refuse("Next-hop with the interface is already in use. Delete it firstly");
    return Sent(config.AddDynamic(added.name, added.place, added.test_address, added.check, added.type));
}

} // namespace

bool AddNextHop(const std::string& name, const std::string& address, const std::string& check,
                const std::string& type) {
    return AddNextHop(name, address, "", check, type);
}

bool AddNextHop(const std::string& name, const std::string& address, const std::string& test_address,
                const std::string& check, const std::string& type) {
    const NewNextHop added{name, address, test_address, check, type};
    return RunCommand(
        {.log = AddLog(added, " address "),
         .check_arguments = [&] { return CheckArguments(added, arguments::IsAddress, "address"); },
         .run = [&](DgdConfig& config) { return AddByAddress(config, added); }});
}

bool AddInterfaceNextHop(const std::string& name, const std::string& interface, const std::string& check,
                         const std::string& type) {
    return AddInterfaceNextHop(name, interface, "", check, type);
}

bool AddInterfaceNextHop(const std::string& name, const std::string& interface,
                         const std::string& test_address, const std::string& check, const std::string& type) {
    const NewNextHop added{name, interface, test_address, check, type};
    return RunCommand(
        {.log = AddLog(added, " interface "),
         .check_arguments = [&] { return CheckArguments(added, arguments::IsInterfaceName, "interface"); },
         .run = [&](DgdConfig& config) { return AddByInterface(config, added); }});
}

bool DeleteNextHop(const std::string& name) {
    return RunCommand({.log = "command: inet dgd next-hop delete name " + name,
                       .check_arguments =
                           [&] {
                               return arguments::Check({{name, arguments::IsDgdText, "next-hop name"}});
                           },
                       .run =
                           [&](DgdConfig& config) {
                               for (const std::string kind : {"next-hop", "dyn-next-hop"}) {
                                   if (ConfigSectionHas(kind + " " + name, ""))
                                       return Sent(config.DeleteNextHop(kind, name));
                               }
                               return Refuse("DGD command can not be executed.");
                           }});
}

// The listing tells what is configured with the dead gateway detection off, too.
bool ShowNextHop(const std::string& name) {
    return RunCommand({.log = "command: inet show dgd next-hop " + (name.empty() ? "all" : name),
                       .works_disabled = true,
                       .run = [&](DgdConfig& config) {
                           if (!config.enabled)
                               shell_print_info(gettext("DGD disabled."));
                           shell_print_info("%s", config.ShowNextHops(name).c_str());
                           return Outcome::kDone;
                       }});
}

} // namespace dgd
