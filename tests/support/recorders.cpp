#include "tests/support/recorders.h"

#include "tests/support/record_files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace support {

namespace fs = std::filesystem;

void Record(const std::string& path) {
    fs::create_directories(kRecorderFolder);
    if (!fs::exists(kRecorderProgram)) {
        // An interpreter line has little room, and no quoting, for the folder of the build.
        fs::create_symlink(RECORDER_PROGRAM, kRecorderProgram);
    }
    fs::create_directories(fs::path(path).parent_path());
    fs::remove(path);
    std::ofstream(path) << "#!" << kRecorderProgram << ' ' << path << '\n';
    chmod(path.c_str(), 0755);
}

void Queue(const std::string& path, const Answer& answer) {
    static int number = 100000;
    fs::create_directories(QueueFolder(path));
    std::ofstream(QueueFolder(path) + "/" + std::to_string(number++))
        << answer.status << ' ' << answer.out.size() << '\n'
        << answer.out << answer.err;
}

std::vector<std::string> Commands() {
    std::vector<std::string> commands;
    std::ifstream calls(kCallsFile);
    for (std::string line; std::getline(calls, line);) {
        commands.push_back(line);
    }
    return commands;
}

void ExpectCommands(const std::vector<std::string>& expected) {
    const std::vector<std::string> commands = Commands();
    const auto [want, got] =
        std::mismatch(expected.begin(), expected.end(), commands.begin(), commands.end());
    if (want != expected.end() || got != commands.end()) {
        ADD_FAILURE() << "command " << want - expected.begin() + 1
                      << " differs\n  expected: " << (want == expected.end() ? "no more commands" : *want)
                      << "\n  but it is: " << (got == commands.end() ? "no more commands" : *got);
    }
}

void ForgetCommands() {
    fs::remove(kCallsFile);
}

} // namespace support
