#include "reference/routing/probe.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/ip.h>
#include <netinet/ip_icmp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace reference::routing {
namespace {

std::uint16_t Checksum(const icmphdr& header) {
    std::uint16_t words[sizeof header / 2];
    std::memcpy(words, &header, sizeof header);
    std::uint32_t sum = 0;
    for (const std::uint16_t word : words)
        sum += word;
    sum = (sum >> 16) + (sum & 0xffff);
    return static_cast<std::uint16_t>(~(sum + (sum >> 16)));
}

int OpenMarked(int type, int protocol, std::uint32_t mark) {
    const int socket = ::socket(AF_INET, type | SOCK_NONBLOCK | SOCK_CLOEXEC, protocol);
    if (socket < 0 || setsockopt(socket, SOL_SOCKET, SO_MARK, &mark, sizeof mark) == 0)
        return socket;
    close(socket);
    return -1;
}

std::uint16_t NextSequence() {
    static std::uint16_t sequence = 0;
    return ++sequence;
}

} // namespace

Probe::Probe(const std::string& type, std::uint32_t address, std::uint32_t mark)
    : is_echo_(type == "icmp"), id_(static_cast<std::uint16_t>(mark)), sequence_(NextSequence()),
      socket_(is_echo_ ? OpenMarked(SOCK_RAW, IPPROTO_ICMP, mark) : OpenMarked(SOCK_STREAM, 0, mark)),
      sent_(false) {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(type == "tcp443" ? 443 : 80);
    to.sin_addr.s_addr = htonl(address);
    const bool connected = connect(socket_, reinterpret_cast<const sockaddr*>(&to), sizeof to) == 0;
    sent_ = is_echo_ ? connected && SendEcho() : connected || errno == EINPROGRESS;
}

Probe::~Probe() {
    if (socket_ >= 0)
        close(socket_);
}

short Probe::Events() const {
    return is_echo_ ? POLLIN : POLLOUT;
}

bool Probe::SendEcho() const {
    icmphdr header{};
    header.type = ICMP_ECHO;
    header.un.echo.id = id_;
    header.un.echo.sequence = sequence_;
    header.checksum = Checksum(header);
    return send(socket_, &header, sizeof header, 0) == sizeof header;
}

Probe::Result Probe::Look() {
    if (!sent_)
        return Result::kFailed;
    return is_echo_ ? LookForEcho() : LookForConnection();
}

// The socket is connected, so what arrives is from the address that was asked; other checks have other ids.
Probe::Result Probe::LookForEcho() const {
    char packet[1500];
    for (;;) {
        const ssize_t size = recv(socket_, packet, sizeof packet, 0);
        if (size < 0)
            return errno == EAGAIN ? Result::kWaiting : Result::kFailed;
        iphdr ip{};
        icmphdr header{};
        if (static_cast<std::size_t>(size) < sizeof ip)
            continue;
        std::memcpy(&ip, packet, sizeof ip);
        if (static_cast<std::size_t>(size) < ip.ihl * 4U + sizeof header)
            continue;
        std::memcpy(&header, packet + ip.ihl * 4, sizeof header);
        if (header.type == ICMP_ECHOREPLY && header.un.echo.id == id_ && header.un.echo.sequence == sequence_)
            return Result::kAnswered;
    }
}

Probe::Result Probe::LookForConnection() const {
    pollfd state{socket_, POLLOUT, 0};
    if (poll(&state, 1, 0) == 0)
        return Result::kWaiting;
    int error = 0;
    socklen_t size = sizeof error;
    const bool asked = getsockopt(socket_, SOL_SOCKET, SO_ERROR, &error, &size) == 0;
    return asked && error == 0 ? Result::kAnswered : Result::kFailed;
}

} // namespace reference::routing
