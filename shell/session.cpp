#include "shell/session.h"

#include "front/helpers/process.h"
#include "front/probes/cluster.h"
#include "platform/guards.h"
#include "platform/input.h"
#include "platform/messages.h"
#include "platform/path_list.h"
#include "records/cluster_edit.h"
#include "shell/help.h"
#include "shell/line.h"
#include "shell/tree.h"
#include "shell/walk.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <unistd.h>

namespace shell {
namespace {

using script_input::kLineLimit;

bool is_over = false;

bool IsTyped(const std::string& line) {
    return line.size() <= kLineLimit && std::none_of(line.begin(), line.end(), [](char letter) {
               return (static_cast<unsigned char>(letter) < ' ' && letter != '\t' && letter != '\r') ||
                      letter == 0x7f;
           });
}

// What the library throws of an input that a command doesn't expect, ends the command and not the shell.
bool RunAction(TreeNode& root, const ShellWords& words) {
    ShellArguments arguments;
    try {
        return root.parse_tokens(words, 0, arguments);
    } catch (const std::exception& failure) {
        return Refuse("the command failed: %s", failure.what());
    }
}

// An edit of the cluster file ends with a guard; other files are accepted as they are.
std::string WayOut(const std::string& file) {
    if (file != path_list::failover_settings)
        return "; conf-tool -p accepts it as it is";
    const std::string edit = corvanshell::DescribeClusterEdit();
    return !edit.empty() ? edit : "; conf-tool -p " + file + " accepts it as it is";
}

// Settings that are not as their guard says read as defaults, which looks like an appliance without any.
void WarnOfGuards() {
    const std::pair<std::string, std::string> guarded[] = {
        {path_list::settings_guard, path_list::local_settings},
        {path_list::settings_guard, path_list::common_settings},
        {path_list::failover_settings + ".crg", path_list::failover_settings}};
    for (const auto& [guard, file] : guarded) {
        if (!corvanshell::CheckGuardFile(guard.c_str(), file.c_str(), nullptr))
            PrintWarning("%s is not as its guard says, and reads as defaults%s", file, WayOut(file));
    }
}

constexpr const char* kModeNames[] = {"single", "cluster"};

bool IsCommandIn(int mode, const ShellWords& words) {
    Node root;
    BuildTree(root, mode);
    const Position position = Follow(root, words);
    return position.taken == words.size() && position.node->ends_command();
}

// A line that this mode doesn't have.
bool RefuseLine(const std::string& line, const Line& split, const Position& position, bool is_in_script) {
    const int mode = Shell::Get().Mode() == 0 ? 0 : 1;
    if (IsCommandIn(1 - mode, split.Texts()))
        return Refuse("this command is there in %s mode only, and the mode is %s", kModeNames[1 - mode],
                      kModeNames[mode]);
    // The mark stands below the line, which begins at the margin.
    return Refuse("%s%s", is_in_script ? "no command\n" : "", DescribeFault(line, split, position));
}

} // namespace

Session::Session() {
    Shell& shell = Shell::Get();
    shell.SetTree(&root_, BuildTree);
    shell.SetMode(GetClusterMode());
    shell.RebuildTree();
}

Session::~Session() {
    Shell::Get().SetTree(nullptr, nullptr);
}

void Session::FollowMode() {
    root_.drop_cleaned();
    Shell& shell = Shell::Get();
    const int mode = GetClusterMode();
    if (mode == shell.Mode())
        return;
    shell.SetMode(mode);
    shell.RebuildTree();
}

bool Session::Run(const std::string& line, std::size_t number) {
    FollowMode();
    shell_prefix_errors(number != 0 ? "line " + std::to_string(number) + ": " : "");
    const bool is_done = RunLine(line, number != 0);
    shell_prefix_errors("");
    return FlushOutput() && is_done;
}

bool Session::RunLine(const std::string& line, bool is_in_script) {
    if (!IsTyped(line))
        return Refuse("a line has %zu bytes at most, and no control characters", kLineLimit);
    const Line split = SplitLine(line);
    const ShellWords words = split.Texts();
    if (split.is_open)
        return Refuse("the line ends within a quoted text");
    if (words.empty())
        return true;
    if (IsHelp(root_, words[0]))
        return ShowHelp({words.begin() + 1, words.end()});
    const Position position = Follow(root_, words);
    if (position.taken < words.size() || !position.node->ends_command())
        return RefuseLine(line, split, position, is_in_script);
    WarnOfGuards();
    return RunAction(root_, words);
}

std::string Session::Prompt() {
    FollowMode();
    char name[HOST_NAME_MAX + 1] = "";
    static_cast<void>(::gethostname(name, HOST_NAME_MAX)); // without a name the prompt is short
    const std::string host(name);
    return host.substr(0, host.find('.')) + " (" + kModeNames[Shell::Get().Mode() == 0 ? 0 : 1] + ")> ";
}

bool EndSession() {
    is_over = true;
    return true;
}

bool IsSessionOver() {
    return is_over;
}

} // namespace shell
