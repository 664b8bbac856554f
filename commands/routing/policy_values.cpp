#include "commands/routing/policy_values.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/dscp.h"
#include "commands/routing/tables.h"
#include "commands/vtysh/saved_file.h"
#include "front/helpers/text.h"
#include "front/probes/cluster.h"
#include "platform/messages.h"

#include <algorithm>

namespace value {
namespace {

constexpr long kLowestPriority = 1024;
constexpr long kHighestPriority = 2048;

// False, with the sentence in `words`, on a passive node.
bool MayList(ShellWords& words) {
    if (!IsDisabledOnPassiveNode(""))
        return true;
    words = {gettext("IP routing is disabled because the cluster appliance is passive.")};
    return false;
}

bool Take(const std::string& word, bool is_good, std::string& parsed) {
    if (is_good)
        parsed = word;
    return is_good;
}

// What `take` makes of each line of a table that has a name.
ShellWords ListTables(const Format<>& failure, std::string (*take)(const std::string& line)) {
    ShellWords words;
    if (!MayList(words))
        return words;
    vtysh::Lines lines;
    if (!routing::ListTables(lines))
        PrintError(failure);
    for (const std::string& line : lines) {
        const std::string word = take(line);
        if (line != "Table MAIN (ID 254):" && !vtysh::Contains(line, "Unnamed table (ID") && !word.empty())
            words.push_back(word);
    }
    return words;
}

std::string TakeName(const std::string& line) {
    constexpr std::string_view table = "Table ";
    return line.starts_with(table) ? line.substr(table.size(), line.find(' ', table.size()) - table.size())
                                   : "";
}

} // namespace

bool ExistingRules::parse(const std::string& word, std::string& parsed) const {
    return Take(word, arguments::IsName(word), parsed);
}

ShellWords ExistingRules::list() const {
    constexpr std::string_view header = "ip rule ";
    ShellWords words;
    if (!MayList(words))
        return words;
    const bool read = vtysh::ReadSaved(vtysh::kZebra, [&](const std::string& line) {
        const std::size_t place = line.find(header);
        if (place == std::string::npos)
            return true;
        const std::size_t start = place + header.size();
        const std::string name = line.substr(start, line.find(' ', start) - start);
        if (!name.empty() && name != "default" && std::find(words.begin(), words.end(), name) == words.end())
            words.push_back(name);
        return true;
    });
    return read ? words : ShellWords();
}

bool ExistingTablesNumber::parse(const std::string& word, std::string& parsed) const {
    return Take(word, arguments::IsNumber(word), parsed);
}

ShellWords ExistingTablesNumber::list() const {
    return ListTables(Tr("failed to find existing table numbers"), routing::TakeTableNumber);
}

bool ExistingTablesName::parse(const std::string& word, std::string& parsed) const {
    return Take(word, arguments::IsName(word), parsed);
}

ShellWords ExistingTablesName::list() const {
    return ListTables(Tr("failed to find existing table names."), TakeName);
}

bool DscpValue::parse(const std::string& word, std::string& parsed) const {
    return Take(word, routing::DscpTable().contains(word), parsed);
}

ShellWords DscpValue::list() const {
    ShellWords words;
    if (!MayList(words))
        return words;
    for (const auto& [key, value] : routing::DscpTable()) {
        const std::string name = routing::DscpClass(value);
        words.push_back(key == name ? key : key + " (" + name + ")");
    }
    return words;
}

bool PolicyPriority::parse(const std::string& word, std::string& parsed) const {
    long number = 0;
    const bool is_good = arguments::IsNumber(word) && ParseLong(word.c_str(), &number) &&
                         number >= kLowestPriority && number <= kHighestPriority &&
                         std::to_string(number).size() == word.size();
    return Take(word, is_good, parsed);
}

} // namespace value
