#include "platform/date_time.h"

#include <iomanip>
#include <sstream>

namespace corvanshell {

std::string ptime_to_dmyhms(const DateTime& moment) {
    std::ostringstream text;
    text << std::setfill('0') << std::setw(2) << moment.day << '.' << std::setw(2) << moment.month << '.'
         << std::setw(4) << moment.year << '-' << std::setw(2) << moment.hour << ':' << std::setw(2)
         << moment.minute << ':' << std::setw(2) << moment.second;
    return text.str();
}

} // namespace corvanshell
