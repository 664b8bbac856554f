#include "shell/session.h"

#include "front/probes/cluster.h"
#include "platform/console.h"
#include "shell/help.h"
#include "shell/line.h"
#include "shell/tree.h"
#include "shell/walk.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <iostream>
#include <unistd.h>

namespace shell {
namespace {

constexpr std::size_t kLineLimit = 8192;

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
        shell_print_error("the command failed: %s", failure.what());
        return false;
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
void Refuse(const std::string& line, const Line& split, const Position& position) {
    const int mode = Shell::Get().Mode() == 0 ? 0 : 1;
    if (IsCommandIn(1 - mode, split.Texts()))
        shell_print_error("this command is there in %s mode only, and the mode is %s", kModeNames[1 - mode],
                          kModeNames[mode]);
    else
        shell_print_error("%s", DescribeFault(line, split, position).c_str());
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
    Shell& shell = Shell::Get();
    const int mode = GetClusterMode();
    if (mode == shell.Mode())
        return;
    shell.SetMode(mode);
    shell.RebuildTree();
}

bool Session::Run(const std::string& line) {
    FollowMode();
    if (!IsTyped(line)) {
        shell_print_error("a line has %zu bytes at most, and no control characters", kLineLimit);
        return false;
    }
    const Line split = SplitLine(line);
    const ShellWords words = split.Texts();
    if (split.is_open) {
        shell_print_error("the line ends within a quoted text");
        return false;
    }
    if (words.empty())
        return true;
    if (IsHelp(root_, words[0]))
        return ShowHelp({words.begin() + 1, words.end()});
    const Position position = Follow(root_, words);
    if (position.taken < words.size() || !position.node->ends_command()) {
        Refuse(line, split, position);
        return false;
    }
    const bool is_done = RunAction(root_, words);
    std::cout.flush();
    std::fflush(stdout);
    return is_done;
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
