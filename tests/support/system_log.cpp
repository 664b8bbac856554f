#include "tests/support/system_log.h"

#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace support {

namespace {

// A datagram is "<priority>Mmm dd hh:mm:ss tag[pid]: text".
LogLine Parse(const std::string& datagram) {
    const size_t head = datagram.find('>');
    const size_t tag_end = datagram.find(": ", head + 17);
    if (head == std::string::npos || tag_end == std::string::npos) {
        return {-1, datagram};
    }
    return {std::atoi(datagram.c_str() + 1) & 7, datagram.substr(tag_end + 2)};
}

} // namespace

void PrintTo(const LogLine& line, std::ostream* stream) {
    *stream << line.level << " \"" << line.text << '"';
}

SystemLog::SystemLog() : socket_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    const sockaddr_un address{AF_UNIX, "/dev/log"};
    unlink(address.sun_path);
    if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        std::perror("/dev/log");
        std::abort();
    }
    reader_ = std::jthread([this](const std::stop_token& stop) {
        pollfd waiting{socket_, POLLIN, 0};
        while (!stop.stop_requested()) {
            poll(&waiting, 1, -1);
            const std::lock_guard guard(mutex_);
            Drain();
        }
    });
}

SystemLog::~SystemLog() {
    reader_.request_stop();
    shutdown(socket_, SHUT_RDWR); // wakes the reader
    reader_.join();
    close(socket_);
}

std::vector<LogLine> SystemLog::Take() {
    const std::lock_guard guard(mutex_);
    Drain();
    return std::exchange(lines_, {});
}

void SystemLog::Drain() {
    char buffer[16384];
    ssize_t length = 0;
    while ((length = recv(socket_, buffer, sizeof buffer, MSG_DONTWAIT)) > 0) {
        lines_.push_back(Parse(std::string(buffer, static_cast<size_t>(length))));
    }
}

} // namespace support
