#include "reference/routing/zebra.h"

#include <algorithm>
#include <iterator>

namespace reference::routing {
namespace {

constexpr const char* kMainName = "MAIN";
constexpr std::uint32_t kLargestTable = kFirstWatchTable - 1;
constexpr std::uint32_t kKernelTables[] = {253, 255}; // its own, beside the main one
constexpr std::uint32_t kDefaultDistance = 10;
constexpr std::uint32_t kDefaultWeight = 1;
constexpr std::uint32_t kLargestMetric = 255;
constexpr std::uint32_t kDefaultPriority = 32766;
constexpr std::uint32_t kLowestPriority = 1024;
constexpr std::uint32_t kHighestPriority = 2048;

constexpr const char* kItems[] = {
    "match from", "match to", "match inbound-interface", "match outbound-interface", "match tos", "set"};

std::optional<std::uint32_t> ToTable(const std::string& text) {
    const auto number = ToNumber(text, 1, kLargestTable);
    const bool taken = number && std::count(std::begin(kKernelTables), std::end(kKernelTables), *number) > 0;
    return taken ? std::nullopt : number;
}

} // namespace

Zebra::Zebra() : policy_(kDefaultPolicy) {
    tables_[kMainTable] = kMainName;
    rules_[{kDefaultPolicy, kDefaultPriority}][kSet] = std::string("table ") + kMainName;
}

bool Zebra::Configure(const Words& words) {
    const bool remove = words.front() == "no";
    const Words line(words.begin() + (remove ? 1 : 0), words.end());
    if (StartsWith(line, {"table"}))
        return ConfigureTable(line, remove);
    if (StartsWith(line, {"ip", "route"}))
        return ConfigureRoute(line, remove);
    if (StartsWith(line, {"ip", "rule"}))
        return ConfigureRule(line, remove);
    if (StartsWith(line, {"ip", "policy"}) && !remove)
        return ConfigurePolicy(line);
    return InSection() && ConfigureItem(line, remove);
}

bool Zebra::HasTable(const std::string& name) const {
    return std::any_of(tables_.begin(), tables_.end(),
                       [&](const auto& table) { return !name.empty() && table.second == name; });
}

// Rules know a table by its name.
bool Zebra::IsReferredTo(const std::string& table) const {
    return !table.empty() && std::any_of(rules_.begin(), rules_.end(), [&](const auto& rule) {
        const Words action = Split(rule.second[kSet]);
        return action.size() == 2 && UpperCase(action[1]) == table;
    });
}

// "no table" takes the name away. Routes stay, in a table without a name, which goes with a second "no
// table".
bool Zebra::ConfigureTable(const Words& words, bool remove) {
    if (words.size() != 2 && (remove || words.size() != 3))
        return false;
    const auto number = ToTable(words[1]);
    if (!number)
        return false;
    const auto table = tables_.find(*number);
    if (remove) {
        if (table == tables_.end() || *number == kMainTable || IsReferredTo(table->second))
            return false;
        const auto route = routes_.lower_bound({*number, 0, 0, 0});
        if (route != routes_.end() && std::get<0>(route->first) == *number)
            table->second.clear();
        else
            tables_.erase(table);
        return true;
    }
    const std::string name = words.size() == 3 ? UpperCase(words[2]) : "";
    if (*number == kMainTable)
        return name == kMainName;
    const bool known = table != tables_.end();
    if (known && table->second == name)
        return true;
    if ((known && IsReferredTo(table->second)) || (!name.empty() && (!IsName(name) || HasTable(name))))
        return false;
    tables_[*number] = name;
    return true;
}

// ip route [table <number>] <address>/<length> <gateway> [<distance> [<weight>]]
bool Zebra::ConfigureRoute(const Words& words, bool remove) {
    std::size_t next = 2;
    std::uint32_t table = kMainTable;
    if (words.size() > 3 && words[2] == "table") {
        const auto number = ToTable(words[3]);
        if (!number)
            return false;
        table = *number;
        next = 4;
    }
    if (words.size() < next + 2 || words.size() > next + (remove ? 2 : 4))
        return false;
    const auto prefix = ToPrefix(words[next]);
    const auto gateway = ToAddress(words[next + 1]);
    if (!prefix || !gateway)
        return false;
    const RouteKey key{table, prefix->address, prefix->length, *gateway};
    if (remove)
        return routes_.erase(key) == 1;
    const auto metric = [&](std::size_t index, std::uint32_t without) {
        return words.size() > index ? ToNumber(words[index], 1, kLargestMetric) : without;
    };
    const auto distance = metric(next + 2, kDefaultDistance);
    const auto weight = metric(next + 3, kDefaultWeight);
    if (!distance || !weight)
        return false;
    tables_.try_emplace(table);
    routes_.insert_or_assign(routes_.end(), key, Route{*distance, *weight});
    return true;
}

bool Zebra::ConfigureRule(const Words& words, bool remove) {
    if (words.size() != 4 || !IsName(words[2]))
        return false;
    const bool is_default = words[2] == kDefaultPolicy;
    const auto priority = is_default ? ToNumber(words[3], kDefaultPriority, kDefaultPriority)
                                     : ToNumber(words[3], kLowestPriority, kHighestPriority);
    if (!priority)
        return false;
    const RuleKey key{words[2], *priority};
    if (!remove) {
        rule_ = &rules_[key];
        EnterSection();
        return true;
    }
    if (is_default || rules_.erase(key) == 0)
        return false;
    rule_ = nullptr;
    if (!HasPolicy(policy_))
        policy_ = kDefaultPolicy;
    return true;
}

bool Zebra::HasPolicy(const std::string& name) const {
    return std::any_of(rules_.begin(), rules_.end(),
                       [&](const auto& rule) { return rule.first.first == name; });
}

bool Zebra::ConfigurePolicy(const Words& words) {
    if (words.size() != 3 || !HasPolicy(words[2]))
        return false;
    policy_ = words[2];
    return true;
}

bool Zebra::IsItemGood(std::size_t kind, const std::string& value) const {
    const Words words = Split(value);
    switch (kind) {
    case kFrom:
    case kTo:
        return ToAddress(value) || ToPrefix(value);
    case kTos:
        return ToNumber(value, 0, kLargestTos).has_value();
    case kSet:
        return value == "blackhole" || value == "reject" ||
               (words.size() == 2 && words[0] == "table" && HasTable(words[1]));
    default:
        return IsInterface(value);
    }
}

// "match from 10.0.0.1", "no match from"; "set table VPN", "no set table", "no set reject"
bool Zebra::ConfigureItem(const Words& words, bool remove) {
    if (rule_ == nullptr)
        return false;
    const std::string line = Join(words, 0);
    if (rule_ == &rules_[{kDefaultPolicy, kDefaultPriority}])
        return line == "set table MAIN"; // the kernel's own rule
    for (std::size_t kind = 0; kind < std::size(kItems); ++kind) {
        const std::string name = kItems[kind];
        std::string& item = (*rule_)[kind];
        if (!line.starts_with(name) || (line.size() > name.size() && line[name.size()] != ' '))
            continue;
        const std::string value = line.size() > name.size() ? line.substr(name.size() + 1) : "";
        if (!remove) {
            if (!IsItemGood(kind, value))
                return false;
            item = value;
            return true;
        }
        if (item.empty() || (kind == kSet ? Split(item)[0] != value : !value.empty()))
            return false;
        item.clear();
        return true;
    }
    return false;
}

std::string Zebra::RuleText(const std::string& policy) const {
    std::string text;
    for (const auto& [key, rule] : rules_) {
        if (!policy.empty() && key.first != policy)
            continue;
        text += "ip rule " + key.first + " " + std::to_string(key.second) + "\n";
        for (std::size_t kind = 0; kind < std::size(kItems); ++kind) {
            if (!rule[kind].empty())
                text += std::string(" ") + kItems[kind] + " " + rule[kind] + "\n";
        }
        text += "!\n";
    }
    return text;
}

std::string Zebra::Configuration() const {
    std::string text = "!\n";
    for (const auto& [number, name] : tables_)
        text += "table " + std::to_string(number) + (name.empty() ? "" : " " + name) + "\n";
    text += "!\n";
    for (const auto& [key, route] : routes_) {
        const auto& [table, address, length, gateway] = key;
        text += "ip route ";
        if (table != kMainTable)
            text += "table " + std::to_string(table) + " ";
        text += AddressText(address) + "/" + std::to_string(length) + " " + AddressText(gateway);
        if (route.distance != kDefaultDistance || route.weight != kDefaultWeight)
            text += " " + std::to_string(route.distance);
        if (route.weight != kDefaultWeight)
            text += " " + std::to_string(route.weight);
        text += "\n";
    }
    return text + "!\n" + RuleText("") + "ip policy " + policy_ + "\n!\n";
}

std::string Zebra::Tables() const {
    std::string text;
    for (const auto& [number, name] : tables_)
        text +=
            (name.empty() ? "Unnamed table" : "Table " + name) + " (ID " + std::to_string(number) + "):\n";
    return text;
}

bool Zebra::Show(const Words& words, std::string& output) const {
    if (Equal(words, {"show", "ip", "policy"})) {
        output = "Current IP policy: " + policy_ + "\n";
    } else if (words.size() == 4 && StartsWith(words, {"show", "ip", "policy"})) {
        output = HasPolicy(words[3]) ? RuleText(words[3]) : "% No such IP policy\n";
    } else if (Equal(words, {"show", "ip", "route"})) {
        output = ShowRoutes();
    } else {
        return false;
    }
    return true;
}

} // namespace reference::routing
