#include "reference/routing/monitor.h"

#include "reference/routing/store.h"

#include <algorithm>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>
#include <vector>

namespace reference::routing {
namespace {

constexpr const char* kConfiguration = "/run/quagga/dgdd.running";
constexpr std::chrono::milliseconds kLongestPause{200}; // after which a changed configuration is seen

bool ActivatePolicy(const std::string& policy) {
    const std::string line = "ip policy " + policy;
    const char* const arguments[] = {"/usr/bin/vtysh",     "-d", "zebra",      "-c",
                                     "configure terminal", "-c", line.c_str(), nullptr};
    pid_t child = 0;
    int status = 0;
    return posix_spawn(&child, arguments[0], nullptr, nullptr, const_cast<char* const*>(arguments),
                       environ) == 0 &&
           waitpid(child, &status, 0) == child && status == 0;
}

// "route policy NAME" or "zlog TEXT"
void RunAction(const std::string& rule, const std::string& action) {
    const Words words = Split(action);
    if (words[0] == "zlog")
        syslog(LOG_INFO, "%s", Join(words, 1).c_str());
    else if (!ActivatePolicy(words[2]))
        syslog(LOG_ERR, "rule %s: failed to activate the policy %s", rule.c_str(), words[2].c_str());
}

} // namespace

Monitor::~Monitor() {
    watches_.clear();
    unlink(kDgdStates);
}

bool Monitor::Begin() {
    Watch::ClearWays(); // of one that was killed
    const auto text = ReadWhole(kConfiguration);
    if (!text || !Configure(*text))
        return false;
    Round();
    return true;
}

bool Monitor::Configure(const std::string& text) {
    text_ = text;
    configuration_ = Dgdd();
    LoadConfiguration(configuration_, text);
    timing_ = {std::chrono::seconds(configuration_.Setting("check-interval")),
               std::chrono::seconds(configuration_.Setting("wait-timeout")),
               configuration_.Setting("fail-count")};
    const auto& next_hops = configuration_.NextHops();
    std::erase_if(watches_, [&](const auto& watch) {
        const auto next_hop = next_hops.find(watch.first);
        return next_hop == next_hops.end() || !(next_hop->second == watch.second.NextHop());
    });
    for (const auto& [name, next_hop] : next_hops)
        watches_.try_emplace(name, next_hop, FreeNumber());
    return true;
}

void Monitor::Reload() {
    const auto text = ReadWhole(kConfiguration);
    if (text && *text != text_ && Configure(*text))
        Publish();
}

std::uint32_t Monitor::FreeNumber() const {
    std::uint32_t number = 0;
    while (std::any_of(watches_.begin(), watches_.end(),
                       [&](const auto& watch) { return watch.second.Number() == number; }))
        ++number;
    return number;
}

void Monitor::Turn() {
    Clock::time_point due = Clock::now() + kLongestPause;
    std::vector<pollfd> descriptors;
    for (const auto& [name, watch] : watches_) {
        due = std::min(due, watch.Due());
        descriptors.push_back({watch.Descriptor(), watch.Events(), 0});
    }
    const auto pause = std::chrono::ceil<std::chrono::milliseconds>(due - Clock::now()).count();
    poll(descriptors.data(), descriptors.size(), static_cast<int>(std::max<long>(pause, 0)));
    Reload();
    Round();
}

void Monitor::Round() {
    bool found = false;
    for (auto& [name, watch] : watches_) {
        const std::string before = watch.State();
        found |= watch.Run(Clock::now(), timing_);
        if (watch.State() != before)
            syslog(LOG_NOTICE, "next hop %s is %s", name.c_str(), watch.State().c_str());
    }
    if (found || access(kDgdStates, F_OK) != 0)
        Publish();
    RunRules();
}

bool Monitor::IsTrue(const Dgdd::Rule& rule) const {
    return !rule.states.empty() &&
           std::all_of(rule.states.begin(), rule.states.end(), [&](const auto& state) {
               const auto watch = watches_.find(state.first);
               return watch != watches_.end() && watch->second.State() == state.second;
           });
}

// A rule acts when it becomes true. One that is new or was changed has not acted yet.
void Monitor::RunRules() {
    std::map<std::string, KnownRule> rules;
    for (const auto& [name, rule] : configuration_.Rules()) {
        const auto known = rules_.find(name);
        const bool has_acted = known != rules_.end() && known->second.rule == rule && known->second.is_true;
        const bool is_true = IsTrue(rule);
        rules[name] = {rule, is_true};
        if (!is_true || has_acted)
            continue;
        for (const auto& [priority, action] : rule.actions)
            RunAction(name, action);
    }
    rules_ = std::move(rules);
}

void Monitor::Publish() const {
    std::string text;
    for (const auto& [name, watch] : watches_)
        text += name + " " + watch.Findings() + "\n";
    if (!ReplaceFile(kDgdStates, text))
        syslog(LOG_ERR, "%s: failed to write", kDgdStates);
}

} // namespace reference::routing
