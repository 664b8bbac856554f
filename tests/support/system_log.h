#pragma once

#include <mutex>
#include <string>
#include <thread>
#include <vector>

// The appliance's log socket, with the test behind it.
namespace support {

struct LogLine {
    int level;        // syslog(3)'s number: 3 error, 4 warning, 6 information
    std::string text; // without time, tag and process id
    bool operator==(const LogLine&) const = default;
};

void PrintTo(const LogLine& line, std::ostream* stream);

class SystemLog {
public:
    SystemLog();
    ~SystemLog();
    SystemLog(const SystemLog&) = delete;
    SystemLog& operator=(const SystemLog&) = delete;

    // What was logged since the last call, by this process and all others.
    [[nodiscard]] std::vector<LogLine> Take();

private:
    void Drain();

    int socket_;
    std::mutex mutex_;
    std::vector<LogLine> lines_;
    // The socket's queue holds ten lines or so and then blocks the writer, so somebody has to read all the
    // time.
    std::jthread reader_;
};

} // namespace support
