#include "platform/input.h"

#include "platform/messages.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <unistd.h>
#include <utility>

namespace script_input {
namespace {

std::size_t number = 0;
off_t last_begin = -1; // where the line that was read last begins, -1 in an input without places
std::optional<std::string> held;

Reading Fail(const char* reason) {
    PrintError("standard input, line %zu: %s", number, reason);
    return Reading::kFailed;
}

// Takes the bytes of the line. What is read beyond it is given back; where that can't be, each byte is read
// alone.
Reading TakeLine(std::string& line, bool has_places) {
    for (char bytes[4096];;) {
        const ssize_t count = ::read(STDIN_FILENO, bytes, has_places ? sizeof bytes : 1);
        if (count < 0)
            return errno == EINTR ? Reading::kEnd : Fail(std::strerror(errno));
        if (count == 0)
            return line.empty() ? Reading::kEnd : Reading::kLine;
        char* const end = std::find(bytes, bytes + count, '\n');
        line.append(bytes, static_cast<std::size_t>(end - bytes));
        if (line.size() > kLineLimit)
            return Fail("the line is too long");
        if (end == bytes + count)
            continue;
        if (has_places)
            ::lseek(STDIN_FILENO, end + 1 - (bytes + count), SEEK_CUR);
        return Reading::kLine;
    }
}

} // namespace

Reading ReadLine(std::string& line) {
    ++number;
    if (held) {
        line = *std::exchange(held, std::nullopt);
        return Reading::kLine;
    }
    last_begin = ::lseek(STDIN_FILENO, 0, SEEK_CUR);
    std::string taken;
    const Reading reading = TakeLine(taken, last_begin >= 0);
    if (reading == Reading::kLine)
        line = std::move(taken);
    else
        --number;
    return reading;
}

void PutBack(const std::string& line) {
    --number;
    if (last_begin < 0 || ::lseek(STDIN_FILENO, last_begin, SEEK_SET) < 0)
        held = line;
}

std::size_t LineNumber() {
    return number;
}

} // namespace script_input
