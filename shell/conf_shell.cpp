#include "front/helpers/xml.h"
#include "platform/console.h"
#include "platform/log.h"
#include "platform/startup.h"
#include "shell/editor.h"
#include "shell/session.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <getopt.h>
#include <memory>
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
    if (optind < argc)
        shell_print_error("%s: a line is given with -c: %s", kProgram, argv[optind]);
    return optind == argc;
}

// Gives the next line. False at the end.
using LineSource = std::function<bool(std::string& line)>;

// With the input's own buffer, so that questions read on where the lines end.
bool ReadStandardInput(std::string& line) {
    char* text = nullptr;
    std::size_t size = 0;
    const auto length = ::getline(&text, &size, stdin);
    const std::unique_ptr<char, void (*)(void*)> owner(text, std::free);
    if (length < 0)
        return false;
    line.assign(text, static_cast<std::size_t>(length));
    if (line.ends_with('\n'))
        line.pop_back();
    return true;
}

// True when every line was good. The first that is not ends the run, unless it keeps going.
bool RunLines(shell::Session& session, bool keep_going, const LineSource& next) {
    bool all_done = true;
    for (std::string line; !shell::IsSessionOver() && (all_done || keep_going) && next(line);)
        all_done = session.Run(line) && all_done;
    return all_done;
}

bool RunCommands(shell::Session& session, const Request& request) {
    auto line = request.lines.begin();
    return RunLines(session, request.keep_going, [&](std::string& next) {
        if (line == request.lines.end())
            return false;
        next = *line++;
        return true;
    });
}

void IgnoreSignal(int) {}

// A person sees what fails and goes on.
bool RunTerminal(shell::Session& session) {
    // Interrupts end the command that runs, or answer its question with no.
    struct sigaction action {};
    action.sa_handler = IgnoreSignal;
    ::sigaction(SIGINT, &action, nullptr);
    shell::Editor editor(session.Root());
    const bool all_done =
        RunLines(session, true, [&](std::string& line) { return editor.Read(session.Prompt(), line); });
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
               : RunLines(session, request.keep_going, ReadStandardInput);
}

} // namespace

int main(int argc, char** argv) {
    Request request;
    if (!ReadRequest(argc, argv, request)) {
        shell_print_error("%s", kUsage);
        return 2;
    }
    if (request.help) {
        shell_print_info("%s", kUsage);
        return 0;
    }
    slopen(kProgram, 9, 8);
    TOO::ErrorInit();
    InitCSPShort();
    InitXml();
    const bool is_done = RunSession(request);
    CleanupXml();
    TOO::ErrorFini();
    slclose();
    return is_done ? 0 : 1;
}
