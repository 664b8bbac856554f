#pragma once

#include "reference/failover/daemon_files.h"

#include <chrono>
#include <string>
#include <sys/types.h>

namespace reference::failover {

// The second line of the state file.
enum State { kStopped = 0, kPassive = 1, kActive = 2 };

[[nodiscard]] bool WriteState(State state);

// This node of the pair: it holds the daemons that do the work, and says in the state file what they found.
class Node {
public:
    explicit Node(Role role);
    ~Node(); // ends both daemons
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    // Starts the daemons. False when they can't be; the reason is on standard error.
    [[nodiscard]] bool Begin();
    // What keepalived has told since the last call.
    [[nodiscard]] bool TakeEvents();
    int Descriptor() const { return events_; }
    State Current() const { return state_; }
    // Within which a node that hears no other one becomes active.
    std::chrono::milliseconds TakeoverTime() const;
    // False when a daemon is gone without which the node can't keep its role.
    bool Lives();

private:
    [[nodiscard]] bool BeginSynchronization();
    [[nodiscard]] bool Become(State state);

    Role role_;
    Cluster cluster_;
    State state_ = kPassive;
    int events_ = -1;
    std::string pending_; // the beginning of a line of events
    pid_t adverts_ = -1;
    pid_t connections_ = -1;
};

// Takes the active addresses off this node's interfaces, whoever put them there.
void DropAddresses();

} // namespace reference::failover
