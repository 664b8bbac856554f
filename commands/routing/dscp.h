#pragma once

#include <map>
#include <string>

namespace routing {

// The class selectors of the DSCP field, each twice, under its hexadecimal notation ("0xB8") and its class
// ("EF"), with the value of the whole field that a rule stores.
const std::map<std::string, int>& DscpTable();

// The class of a value, "" when it has none.
std::string DscpClass(int value);
// "0xB8"
std::string DscpNotation(int value);

} // namespace routing
