#pragma once

#include <cstdint>
#include <string>

namespace reference::routing {

// One check on its way. It travels with its mark, and by the mark's route alone.
class Probe {
public:
    enum class Result { kWaiting, kAnswered, kFailed };

    // Sends it. `type` is "icmp", "tcp80" or "tcp443"; `address` is in host order.
    Probe(const std::string& type, std::uint32_t address, std::uint32_t mark);
    ~Probe();
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    int Descriptor() const { return socket_; }
    short Events() const;
    // What is known of it now. A TCP port answers when it takes the connection.
    Result Look();

private:
    bool SendEcho() const;
    Result LookForEcho() const;
    Result LookForConnection() const;

    bool is_echo_;
    std::uint16_t id_;
    std::uint16_t sequence_; // tells a late answer to an earlier check
    int socket_;
    bool sent_;
};

} // namespace reference::routing
