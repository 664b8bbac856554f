// The program behind every recorder. The kernel starts it as the interpreter of the file at the recorder's
// path: PROGRAM <name given to Record> <path> ARG...

#include "tests/support/record_files.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <sys/file.h>
#include <unistd.h>

namespace {

// One word of a shell line, on one line whatever it holds.
std::string Quote(const std::string& word) {
    const char* plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_./:=,@%+-";
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
        return word;
    }
    if (word.find('\n') == std::string::npos && word.find('\'') == std::string::npos) {
        return "'" + word + "'";
    }
    std::string quoted = "$'";
    for (const char c : word) {
        if (c == '\n') {
            quoted += "\\n";
        } else {
            quoted += (c == '\'' || c == '\\') ? std::string{'\\', c} : std::string{c};
        }
    }
    return quoted + "'";
}

// Says the oldest queued answer, and gives its exit status.
int SayAnswer(const std::string& name) {
    std::error_code none;
    std::set<std::filesystem::path> answers;
    for (const auto& entry : std::filesystem::directory_iterator(support::QueueFolder(name), none)) {
        answers.insert(entry.path());
    }
    if (answers.empty()) {
        return 0;
    }
    std::ifstream file(*answers.begin(), std::ios::binary);
    int status = 0;
    size_t length = 0;
    file >> status >> length;
    file.ignore();
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    std::cout << text.substr(0, length) << std::flush;
    std::cerr << text.substr(length);
    std::filesystem::remove(*answers.begin());
    return status;
}

} // namespace

int main(int argc, char** argv) {
    // Locked until the end, so that calls at the same time get an answer each.
    const int calls = open(support::kCallsFile.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (argc < 3 || calls < 0 || flock(calls, LOCK_EX) != 0) {
        std::cerr << "recorder: cannot record\n";
        return 120;
    }
    std::string line = argv[1];
    for (int i = 3; i < argc; i++) {
        line += ' ' + Quote(argv[i]);
    }
    line += '\n';
    return write(calls, line.data(), line.size()) < 0 ? 120 : SayAnswer(argv[1]);
}
