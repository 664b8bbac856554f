#include "commands/routing/policy_show.h"

#include "commands/routing/dscp.h"
#include "commands/routing/route_listing.h"
#include "commands/routing/tables.h"
#include "commands/vtysh/saved_file.h"
#include "platform/messages.h"
#include "platform/pager.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace routing {
namespace {

constexpr const char* kTitle = "Rule(Policy) Name Priority\n  Values\n";
constexpr std::size_t kRuleLength = 79;
constexpr const char* kIndent = "      ";
constexpr const char* kHeader = "ip rule ";
constexpr const char* kDefaultRule = "rule default 32766";
constexpr const char* kMatch = "match ";

struct Rule {
    std::string header;
    std::string name;
    Lines items;
};

struct Policies {
    std::vector<Rule> rules;
    std::string active;
};

// The daemon's tables, for which it is asked when the first one is to be shown.
class Tables {
public:
    // "5" for "VPN"; "", told on the terminal, when there is none.
    std::string FindNumber(const std::string& name) {
        if (!is_asked_ && !(is_known_ = ListTables(lines_)))
            PrintError(Tr("failed to get table number"));
        is_asked_ = true;
        for (const std::string& line : lines_) {
            if (vtysh::Contains(line, "Table " + name + " (ID "))
                return TakeTableNumber(line);
        }
        if (is_known_)
            PrintError(Tr("failed to find table with name %s"), name);
        return "";
    }

private:
    bool is_asked_ = false;
    bool is_known_ = false;
    Lines lines_;
};

std::string FirstWord(const std::string& text) {
    return text.substr(0, text.find(' '));
}

bool IsWanted(const std::string& header, const std::string& name, const std::string& priority) {
    return (name.empty() || vtysh::Contains(header + " ", kHeader + name + " ")) &&
           (priority.empty() || header.ends_with(" " + priority));
}

bool ReadPolicies(const std::string& name, const std::string& priority, Policies& policies) {
    constexpr const char* active = "ip policy ";
    bool wanted = false;
    return vtysh::ReadSaved(vtysh::kZebra, [&](const std::string& line) {
        if (line.starts_with(active)) {
            policies.active = FirstWord(line.substr(std::string(active).size()));
        } else if (line.starts_with(kHeader)) {
            wanted = IsWanted(line, name, priority);
            if (wanted)
                policies.rules.push_back({line, FirstWord(line.substr(std::string(kHeader).size())), {}});
        } else if (line.starts_with('!')) {
            wanted = false;
        } else if (wanted) {
            policies.rules.back().items.push_back(line);
        }
        return true;
    });
}

// "table VPN" -> "table VPN (5)"
std::string FormatTable(const std::string& name, Tables& tables) {
    if (name == "MAIN")
        return "table 254 (default)";
    const std::string number = tables.FindNumber(name);
    return "table " + name + (number.empty() ? "" : " (" + number + ")");
}

// "184" -> "match dscp 0xB8 (EF)"
std::string FormatDscp(const std::string& decimal) {
    const int value = static_cast<int>(std::strtol(decimal.c_str(), nullptr, 10));
    const std::string name = DscpClass(value);
    return "match dscp " + DscpNotation(value) + (name.empty() ? "" : " (" + name + ")");
}

// The item as the commands spell it.
std::string FormatItem(const std::string& line, Tables& tables) {
    const auto behind = [](const std::string& text, const std::string& word, std::string& rest) {
        if (!text.starts_with(word))
            return false;
        rest = text.substr(word.size());
        return true;
    };
    std::string text = line.substr(std::min(line.find_first_not_of(' '), line.size()));
    std::string rest;
    if (behind(text, "set ", rest))
        text = rest;
    if (text == "blackhole")
        return "block";
    if (behind(text, "table ", rest))
        return FormatTable(rest, tables);
    if (behind(text, "match tos ", rest))
        return FormatDscp(rest);
    if (text.starts_with("match from ") || text.starts_with("match to "))
        text.insert(std::string(kMatch).size(), "address ");
    return text;
}

std::string FormatHeader(const Rule& rule) {
    if (vtysh::Contains(rule.header, kDefaultRule))
        return "rule default\n";
    return corvanshell::WrapStr(rule.header.substr(3)) + "\n";
}

std::string FormatPolicies(const Policies& policies) {
    Tables tables;
    std::string text = kTitle + std::string(kRuleLength, '-') + "\n";
    for (const Rule& rule : policies.rules) {
        text += FormatHeader(rule);
        for (const std::string& item : rule.items)
            text += kIndent + FormatItem(item, tables) + "\n";
        if (rule.name == policies.active)
            text += kIndent + std::string("Policy ") + rule.name + " is active.\n";
    }
    return text + "\n" + gettext("Policy rule(s) configured: ") + std::to_string(policies.rules.size()) +
           "\n";
}

bool Page(const std::string& text) {
    ShellPager pager;
    std::FILE* const opened = pager.open();
    const bool written = WriteText(text, opened == nullptr ? stdout : opened);
    return pager.wait() && written;
}

} // namespace

bool ShowPolicy(const std::string& name, const std::string& priority) {
    if (!vtysh::Send(vtysh::QuestionLine(vtysh::kZebra, "write")))
        return Refuse(Tr("failed to write zebra.conf."));
    Policies policies;
    if (!ReadPolicies(name, priority, policies))
        return false;
    if (policies.rules.empty())
        return Refuse(Tr("Policy rule(s) not found"));
    return Page(FormatPolicies(policies));
}

} // namespace routing
