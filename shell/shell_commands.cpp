#include "shell/families.h"
#include "shell/help.h"
#include "shell/session.h"

namespace shell {
namespace {

constexpr Command kCommands[] = {
    {"help [<text>]", "shows all commands; with words of a line behind it, those that begin so",
     [](const std::string&) { return ShowHelp({}); }, kShows},
    {"exit", "leaves the shell", kCall<&EndSession>, kShows},
    {"quit", "leaves the shell", kCall<&EndSession>, kShows},
};

} // namespace

std::span<const Command> ShellCommands() {
    return kCommands;
}

} // namespace shell
