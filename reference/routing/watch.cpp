#include "reference/routing/watch.h"

#include "reference/routing/links.h"
#include "reference/routing/store.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace reference::routing {
namespace {

constexpr std::uint32_t kFirstMark = 0xd6d00000;
constexpr int kPreference = 100; // before the rules of every policy
constexpr const char* kProtocol = " protocol 214 ";
constexpr const char* kLeases = "/run/dhcpclient/";
// Checks lie a little closer than configured: an edge takes a moment to have its effect, and traffic is to
// flow again within count x interval + wait.
constexpr std::chrono::milliseconds kReserve{250};

std::string Now() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    char text[32] = "";
    if (localtime_r(&now, &local) != nullptr)
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text;
}

void RunBatch(const std::string& lines) {
    FILE* const pipe = popen("ip -4 -force -batch - 2> /dev/null", "we");
    if (pipe == nullptr)
        return;
    fwrite(lines.data(), 1, lines.size(), pipe);
    pclose(pipe);
}

// Of a next hop behind an interface, the gateway of the interface's lease.
std::optional<std::uint32_t> GatewayOf(const Dgdd::NextHop& next_hop) {
    if (!next_hop.dynamic)
        return ToAddress(next_hop.place);
    const Words lease = Split(ReadWhole(kLeases + next_hop.place).value_or(""));
    return lease.empty() ? std::nullopt : ToAddress(lease[0]);
}

} // namespace

Watch::Watch(const Dgdd::NextHop& next_hop, std::uint32_t number)
    : next_hop_(next_hop), number_(number), next_check_(Clock::now()) {
    if (!next_hop_.checked) {
        state_ = "up";
        next_check_ = Clock::time_point::max();
    }
}

Watch::~Watch() {
    const std::string table = std::to_string(kFirstWatchTable + number_);
    RunBatch("rule del pref " + std::to_string(kPreference) + " table " + table + "\nroute flush table " +
             table + "\n");
}

void Watch::ClearWays() {
    RunBatch(std::string("rule flush") + kProtocol + "\nroute flush table all" + kProtocol + "\n");
}

std::string Watch::Findings() const {
    return state_ + " " + std::to_string(successes_) + " " + std::to_string(failures_) + " " + last_change_;
}

std::string Watch::Way() const {
    const auto gateway = GatewayOf(next_hop_);
    const std::vector<Link> links = ReadLinks();
    const Link* const link = gateway ? LinkOf(links, *gateway) : nullptr;
    if (link == nullptr || (next_hop_.dynamic && link->interface != next_hop_.place))
        return "none";
    return "via " + AddressText(*gateway) + " dev " + link->interface;
}

// Where the way is broken the table answers all the same, so that no other table is asked.
void Watch::LayWay() {
    const std::string way = Way();
    if (way == way_)
        return;
    const std::string table = " table " + std::to_string(kFirstWatchTable + number_) + kProtocol;
    char mark[16];
    std::snprintf(mark, sizeof mark, "0x%x", kFirstMark + number_);
    RunBatch("route flush" + table + "\nroute add unreachable default" + table + "metric 2\n" +
             (way == "none" ? "" : "route add default " + way + table + "metric 1\n") + "rule add pref " +
             std::to_string(kPreference) + " fwmark " + mark + table + "\n");
    way_ = way;
}

void Watch::Begin(Clock::time_point now, const Timing& timing) {
    LayWay();
    const auto tested =
        next_hop_.test_address.empty() ? GatewayOf(next_hop_) : ToAddress(next_hop_.test_address);
    next_check_ = now + timing.interval - kReserve;
    deadline_ = now + timing.wait;
    if (tested)
        probe_ = std::make_unique<Probe>(next_hop_.check_type, *tested, kFirstMark + number_);
    else
        End(false, timing.count);
}

void Watch::End(bool answered, std::uint32_t count) {
    probe_.reset();
    ++(answered ? successes_ : failures_);
    if (!answered)
        way_.clear(); // the link may have been away, and its routes with it
    const std::string found = answered ? "up" : "down";
    against_ = found == state_ ? 0 : against_ + 1;
    // What is there is believed at once, what has gone or comes back after as many findings as are
    // configured.
    if (against_ >= count || (answered && state_ == "unknown"))
        Change(found);
}

void Watch::Change(const std::string& state) {
    state_ = state;
    last_change_ = Now();
    successes_ = failures_ = against_ = 0;
}

bool Watch::Run(Clock::time_point now, const Timing& timing) {
    if (!probe_) {
        if (now < next_check_)
            return false;
        Begin(now, timing);
        if (!probe_)
            return true;
    }
    const Probe::Result result = probe_->Look();
    if (result == Probe::Result::kWaiting && now < deadline_)
        return false;
    End(result == Probe::Result::kAnswered, timing.count);
    // A check that took longer than the interval is followed by the next one at once.
    next_check_ = std::max(next_check_, now);
    return true;
}

} // namespace reference::routing
