#pragma once

#include "reference/routing/dgdd.h"
#include "reference/routing/probe.h"

#include <chrono>
#include <memory>
#include <string>

namespace reference::routing {

using Clock = std::chrono::steady_clock;

// Timing of the checks, as it is configured.
struct Timing {
    std::chrono::seconds interval;
    std::chrono::seconds wait;
    std::uint32_t count;
};

// A next hop under watch: its checks, one at a time, and what they found. Each watch has a mark and a table
// of its own, in which the next hop is the only way, so that a check never takes another next hop's.
class Watch {
public:
    Watch(const Dgdd::NextHop& next_hop, std::uint32_t number);
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    const Dgdd::NextHop& NextHop() const { return next_hop_; }
    std::uint32_t Number() const { return number_; }
    // "up", "down" or, before the first finding, "unknown". Without checks it is up.
    const std::string& State() const { return state_; }
    // "<state> <successes> <failures> <last change>"; the numbers begin anew with a change.
    std::string Findings() const;

    int Descriptor() const { return probe_ ? probe_->Descriptor() : -1; }
    short Events() const { return probe_ ? probe_->Events() : 0; }
    // Does what is due at `now`. True when a check has ended.
    bool Run(Clock::time_point now, const Timing& timing);
    Clock::time_point Due() const { return probe_ ? deadline_ : next_check_; }

    // Takes away what watches of this process or of one that was killed have in the kernel.
    static void ClearWays();

private:
    void Begin(Clock::time_point now, const Timing& timing);
    void End(bool answered, std::uint32_t count);
    void Change(const std::string& state);
    std::string Way() const;
    void LayWay();

    Dgdd::NextHop next_hop_;
    std::uint32_t number_;
    std::string state_ = "unknown";
    std::string last_change_ = "never";
    std::uint32_t successes_ = 0;
    std::uint32_t failures_ = 0;
    std::uint32_t against_ = 0; // findings in a row that speak against the state
    std::string way_;           // as it was laid last, "" when it has to be laid
    std::unique_ptr<Probe> probe_;
    Clock::time_point deadline_;
    Clock::time_point next_check_;
};

} // namespace reference::routing
