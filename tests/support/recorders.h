#pragma once

#include <string>
#include <vector>

// Recorders stand where the appliance's own programs would: they write down their arguments and answer what
// the test queued.
namespace support {

struct Answer {
    std::string out = {};
    std::string err = {};
    int status = 0;
};

// Puts a recorder at `path`. Without an answer in its queue it says nothing and ends with 0.
void Record(const std::string& path);

// The answer to the next call of the recorder at `path` that has none yet.
void Queue(const std::string& path, const Answer& answer);

// Every call of every recorder so far, in order, each as one shell line: "/sbin/ifalias.sh add eth1 'a b'".
[[nodiscard]] std::vector<std::string> Commands();

// Compares the whole list, and names the first command that differs.
void ExpectCommands(const std::vector<std::string>& expected);

// Forgets the calls so far.
void ForgetCommands();

} // namespace support
