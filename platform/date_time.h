#pragma once

#include <compare>
#include <string>

namespace corvanshell {

// A date and time of day of the local calendar. It can hold a date that no calendar has, as an administrator
// may type one; a std::time_t could not, and would be ambiguous in the hour that comes twice.
struct DateTime {
    int year = 1970;
    int month = 1; // 1 to 12
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
    auto operator<=>(const DateTime&) const = default;
};

// "<day>.<month>.<year>-<hour>:<minute>:<second>", with two digits each and four for the year.
std::string ptime_to_dmyhms(const DateTime& moment);

} // namespace corvanshell
