#include "commands/routing/dscp.h"

#include <cstdio>

namespace routing {
namespace {

constexpr struct {
    int value;
    const char* name;
} kClasses[] = {
    {0, "default"}, {40, "AF11"},  {48, "AF12"},  {56, "AF13"},  {72, "AF21"},  {80, "AF22"},  {88, "AF23"},
    {104, "AF31"},  {112, "AF32"}, {120, "AF33"}, {136, "AF41"}, {144, "AF42"}, {152, "AF43"}, {32, "CS1"},
    {64, "CS2"},    {96, "CS3"},   {128, "CS4"},  {160, "CS5"},  {192, "CS6"},  {224, "CS7"},  {184, "EF"},
};

std::map<std::string, int> MakeTable() {
    std::map<std::string, int> table;
    for (const auto& [value, name] : kClasses) {
        table[DscpNotation(value)] = value;
        table[name] = value;
    }
    return table;
}

} // namespace

const std::map<std::string, int>& DscpTable() {
    static const std::map<std::string, int> table = MakeTable();
    return table;
}

std::string DscpClass(int value) {
    for (const auto& row : kClasses) {
        if (row.value == value)
            return row.name;
    }
    return "";
}

std::string DscpNotation(int value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", static_cast<unsigned>(value));
    return text;
}

} // namespace routing
