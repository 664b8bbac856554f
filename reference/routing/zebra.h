#pragma once

#include "reference/routing/daemon.h"
#include "reference/routing/kernel.h"

#include <array>
#include <cstdint>
#include <map>
#include <tuple>
#include <utility>

namespace reference::routing {

// The routing daemon: named tables, static routes, policies.
class Zebra : public Daemon {
public:
    Zebra();
    [[nodiscard]] bool Configure(const Words& words) override;
    [[nodiscard]] bool Show(const Words& words, std::string& output) const override;
    std::string Configuration() const override;
    std::string Tables() const override;
    [[nodiscard]] bool Apply() const override;

private:
    static constexpr const char* kDefaultPolicy = "default";
    static constexpr std::uint32_t kLargestTos = 255;

    struct Route {
        std::uint32_t distance;
        std::uint32_t weight;
    };
    // Table, address, prefix length, gateway.
    using RouteKey = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t>;
    using Rule = std::array<std::string, 6>; // a value for each kind of item, "" when there is none
    enum Kind : std::size_t { kFrom, kTo, kInbound, kOutbound, kTos, kSet };
    using RuleKey = std::pair<std::string, std::uint32_t>;

    bool ConfigureTable(const Words& words, bool remove);
    bool ConfigureRoute(const Words& words, bool remove);
    bool ConfigureRule(const Words& words, bool remove);
    bool ConfigurePolicy(const Words& words);
    bool ConfigureItem(const Words& words, bool remove);
    bool IsItemGood(std::size_t kind, const std::string& value) const;
    bool HasPolicy(const std::string& name) const;
    bool HasTable(const std::string& name) const;
    std::uint32_t TableNumber(const std::string& name) const; // of a table that is there
    bool IsReferredTo(const std::string& table) const;        // by a rule
    RouteGroups Groups(const std::vector<Link>& links) const; // of the routes whose gateways are neighbours
    void AddRules(Forwarding& forwarding) const;
    std::string ShowRoutes() const;
    std::string RuleText(const std::string& policy) const; // of one policy, or of all for ""

    std::map<std::uint32_t, std::string> tables_; // "" for a table whose name was taken away
    std::map<RouteKey, Route> routes_;
    std::map<RuleKey, Rule> rules_;
    Rule* rule_ = nullptr; // the open section
    std::string policy_;
};

} // namespace reference::routing
