#include "commands/vtysh/daemon.h"

#include "platform/processes.h"

#include <unistd.h>

namespace vtysh {
namespace {

constexpr const char* kProgram = "/usr/bin/vtysh";
constexpr const char* kSave = "write file";

std::string Part(const std::string& words) {
    return " -c \"" + words + "\"";
}

std::string Opening(const Daemon& daemon) {
    return std::string(kProgram) + " -d " + daemon.name;
}

} // namespace

std::string QuestionLine(const Daemon& daemon, const std::string& question) {
    return Opening(daemon) + Part(question);
}

std::string QuestionLine(const std::string& question) {
    return kProgram + Part(question);
}

std::string ConfigureLine(const Daemon& daemon, const std::vector<std::string>& parts) {
    std::string line = Opening(daemon) + Part(daemon.entry);
    for (const std::string& part : parts)
        line += Part(part);
    return line + Part(daemon.exit) + Part(kSave);
}

bool Ask(const std::string& line, Lines& lines) {
    lines.clear();
    if (corvanshell::run(line.c_str(), lines) == 0)
        return true;
    lines.clear();
    return false;
}

bool Send(const std::string& line) {
    std::string output;
    return corvanshell::run(line.c_str(), output) == 0;
}

bool Ask(const Daemon& daemon, const std::string& question, Lines& lines) {
    return Ask(QuestionLine(daemon, question), lines);
}

bool Configure(const Daemon& daemon, const std::vector<std::string>& parts) {
    return Send(ConfigureLine(daemon, parts));
}

bool ConfigureQuietly(const Daemon& daemon, const std::string& part) {
    return shell_spawn_quiet(kProgram, "-d", daemon.name, "-c", daemon.entry, "-c", part.c_str(), "-c",
                             daemon.exit, "-c", kSave, nullptr) == 0;
}

bool AskSaved(const Daemon& daemon, Lines& lines) {
    lines.clear();
    return access(daemon.file, F_OK) != 0 || Ask(std::string("cat ") + daemon.file, lines);
}

bool Contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

} // namespace vtysh
