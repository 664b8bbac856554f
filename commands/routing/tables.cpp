#include "commands/routing/tables.h"

#include "commands/arguments/arguments.h"
#include "commands/routing/static_route.h"
#include "front/helpers/text.h"
#include "platform/messages.h"

#include <algorithm>

namespace routing {
namespace {

constexpr const char* kTableList = "show tables static";
constexpr std::size_t kNameColumn = 6; // behind "Table "

bool AskForTables(Lines& lines) {
    return vtysh::Ask(vtysh::QuestionLine(kTableList), lines);
}

bool AskForConfiguration(Lines& lines) {
    return vtysh::Ask(vtysh::kZebra, "show running-config", lines);
}

std::string IdOf(const std::string& number) {
    return "(ID " + number + ")";
}

bool AnyContains(const Lines& lines, const std::string& text) {
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return vtysh::Contains(line, text); });
}

} // namespace

bool ListTables(Lines& lines) {
    return vtysh::Ask(vtysh::kZebra, kTableList, lines);
}

std::string TakeTableNumber(const std::string& line) {
    const std::size_t start = line.find("(ID ");
    const std::size_t end = start == std::string::npos ? start : line.find(')', start);
    return end == std::string::npos ? "" : line.substr(start + 4, end - start - 4);
}

bool TableExists(const std::string& number) {
    Lines lines;
    if (number.empty() || !AskForTables(lines))
        return false;
    for (const std::string& line : lines) {
        if (vtysh::Contains(line, "Unnamed table " + IdOf(number)))
            return false;
        if (vtysh::Contains(line, IdOf(number)))
            return true;
    }
    return false;
}

bool TableHasRoutes(const std::string& number) {
    Lines lines;
    if (number.empty() || !AskForConfiguration(lines))
        return false;
    return AnyContains(lines, "ip route table " + number + " ") ||
           (number == kMainTable && AnyContains(lines, "table 254 MAIN"));
}

bool IsTableNameUnique(const std::string& name) {
    Lines lines;
    return AskForTables(lines) && !AnyContains(lines, "Table " + ToUpper(name) + " (ID");
}

bool TableNameMatches(const std::string& number, const std::string& name) {
    Lines lines;
    if (number.empty() || name.empty() || !AskForTables(lines))
        return false;
    return AnyContains(lines, "Table " + ToUpper(name) + " " + IdOf(number));
}

std::string GetTableNumber(const std::string& name) {
    Lines lines;
    if (name.empty() || !AskForTables(lines))
        return "";
    const std::string text = "Table " + ToUpper(name);
    const auto line = std::find_if(lines.begin(), lines.end(), [&](const std::string& candidate) {
        return vtysh::Contains(candidate, text);
    });
    return line == lines.end() ? "" : TakeTableNumber(*line);
}

// A table without a name gives "d", out of "Unnamed table (ID 7):". Kept: it is no table's name, which are
// upper case, so no rule refers to it and the table can be cleared.
std::string GetTableName(const std::string& number) {
    Lines lines;
    if (!AskForTables(lines))
        return "";
    const std::string text = IdOf(number) + ":";
    for (const std::string& line : lines) {
        if (vtysh::Contains(line, text) && line.size() > kNameColumn)
            return line.substr(kNameColumn, line.find(' ', kNameColumn) - kNameColumn);
    }
    return "";
}

Lines GetTableNumbers() {
    Lines lines, numbers;
    if (!ListTables(lines))
        return numbers;
    for (const std::string& line : lines) {
        const std::string number = TakeTableNumber(line);
        if (!number.empty())
            numbers.push_back(number);
    }
    return numbers;
}

bool AddTable(const std::string& name, const std::string& number) {
    if (!arguments::IsName(name) || (!number.empty() && !arguments::IsNumber(number)))
        return false;
    return vtysh::Configure(vtysh::kZebra, {"table " + number + " " + name});
}

bool IsTableUnreferenced(const std::string& name) {
    Lines lines;
    return AskForConfiguration(lines) && !AnyContains(lines, " set table " + name);
}

bool DeleteTable(const std::string& number) {
    if (!IsTableUnreferenced(GetTableName(number)))
        return Refuse(Tr("Can't delete this table, because it is referenced by at least one policy rule."));
    return arguments::IsNumber(number) && vtysh::Configure(vtysh::kZebra, {"no table " + number});
}

bool CanDeleteRouteOfTable(const std::string& number) {
    if (IsTableUnreferenced(GetTableName(number)))
        return true;
    Lines lines;
    if (!AskForConfiguration(lines))
        return false;
    // The number may begin another one: a route of table 50 counts for table 5. Kept: the table itself is
    // asked about once more before it goes.
    const std::string text = "ip route table " + number;
    return std::count_if(lines.begin(), lines.end(),
                         [&](const std::string& line) { return vtysh::Contains(line, text); }) != 1;
}

} // namespace routing
