#include "front/helpers/process.h"
#include "front/helpers/xml.h"
#include "platform/input.h"
#include "platform/log.h"
#include "platform/messages.h"
#include "platform/startup.h"
#include "shell/editor.h"
#include "shell/session.h"

#include <csignal>
#include <cstdio>
#include <functional>
#include <getopt.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr char kProgram[] = "conf-shell";

constexpr const char* kUsage =
    "conf-shell [-y] [-k] [-c LINE]...\n"
    "  -c, --command LINE  runs the line; several run in their order\n"
    "  -y, --yes           answers yes to every question\n"
    "  -k, --keep-going    goes on behind a command that fails\n"
    "  -h, --help          shows this; the command help shows the commands\n"
    "Without -c the lines come from standard input, a terminal or a file. The exit\n"
    "status is 0 when every command succeeded, 1 when one failed, and 2 when\n"
    "conf-shell was called in a wrong way.";

constexpr option kOptions[] = {
    {"command", required_argument, nullptr, 'c'},
    {"yes", no_argument, nullptr, 'y'},
    {"keep-going", no_argument, nullptr, 'k'},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};

struct Request {
    std::vector<std::string> lines;
    bool keep_going = false;
    bool help = false;
};

// False, told on the terminal, for a wrong command line.
bool ReadRequest(int argc, char** argv, Request& request) {
    for (int letter = 0; (letter = getopt_long(argc, argv, "c:ykh", kOptions, nullptr)) != -1;) {
        switch (letter) {
        case 'c':
            request.lines.emplace_back(optarg);
            break;
        case 'y':
            shell_assume_confirmation();
            break;
        case 'k':
            request.keep_going = true;
            break;
        case 'h':
            request.help = true;
            break;
        default:
            return false;
        }
    }
    return optind == argc || Refuse("%s: a line is given with -c: %s", kProgram, argv[optind]);
}

using script_input::Reading;

// Gives the next line.
using LineSource = std::function<Reading(std::string& line)>;

// True when every line was good, and could be read. The first that is not ends the run, unless it keeps
// going. Lines have numbers where they come from a file.
bool RunLines(shell::Session& session, bool keep_going, const LineSource& next) {
    bool all_done = true;
    for (std::string line; !shell::IsSessionOver() && (all_done || keep_going);) {
        const Reading reading = next(line);
        if (reading != Reading::kLine)
            return all_done && reading == Reading::kEnd;
        all_done = session.Run(line, script_input::LineNumber()) && all_done;
    }
    return all_done;
}

bool RunCommands(shell::Session& session, const Request& request) {
    bool all_done = true;
    for (const std::string& line : request.lines) {
        if (shell::IsSessionOver() || !(all_done || request.keep_going))
            break;
        all_done = session.Run(line) && all_done;
    }
    return all_done;
}

void IgnoreSignal(int) {}

// A person sees what fails and goes on.
bool RunTerminal(shell::Session& session) {
    // Interrupts end the command that runs, or answer its question with no.
    struct sigaction action {};
    action.sa_handler = IgnoreSignal;
    ::sigaction(SIGINT, &action, nullptr);
    shell::Editor editor(session.Root());
    const bool all_done = RunLines(session, true, [&](std::string& line) {
        return editor.Read(session.Prompt(), line) ? Reading::kLine : Reading::kEnd;
    });
    if (!shell::IsSessionOver())
        std::puts(""); // behind the end of the input
    return all_done;
}

bool RunSession(const Request& request) {
    shell::Session session;
    if (!request.lines.empty())
        return RunCommands(session, request);
    return ::isatty(STDIN_FILENO) && ::isatty(STDOUT_FILENO)
               ? RunTerminal(session)
               : RunLines(session, request.keep_going, script_input::ReadLine);
}

} // namespace

int main(int argc, char** argv) {
    StartProcess();
    Request request;
    if (!ReadRequest(argc, argv, request)) {
        PrintError("%s", kUsage);
        return 2;
    }
    if (request.help) {
        PrintInfo("%s", kUsage);
        return FlushOutput() ? 0 : 1;
    }
    slopen(kProgram, 9, 8);
    TOO::ErrorInit();
    InitCSPShort();
    InitXml();
    bool is_done = RunSession(request);
    is_done = FlushOutput() && is_done;
    CleanupXml();
    TOO::ErrorFini();
    slclose();
    return is_done ? 0 : 1;
}
