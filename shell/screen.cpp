#include "shell/screen.h"

#include "platform/console.h"

#include <algorithm>
#include <limits>
#include <sys/ioctl.h>
#include <unistd.h>

namespace shell {
namespace {

constexpr std::size_t kUsualColumns = 80;  // of a terminal that doesn't know its own, such as a serial line
constexpr std::size_t kFewestColumns = 40; // so that a few words stay behind an indent

} // namespace

// The last column stays free: some terminals go to the next line as soon as it is written.
std::size_t LineWidth() {
    if (::isatty(STDOUT_FILENO) == 0)
        return std::numeric_limits<std::size_t>::max();
    winsize size = {};
    const bool is_known = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return std::max<std::size_t>(is_known ? size.ws_col : kUsualColumns, kFewestColumns) - 1;
}

std::string WrapBehind(std::size_t indent, const std::string& text) {
    std::string wrapped = corvanshell::WrapStr(text, LineWidth() - indent);
    for (std::size_t end = wrapped.find('\n'); end != std::string::npos; end = wrapped.find('\n', end + 1))
        wrapped.insert(end + 1, indent, ' ');
    return wrapped;
}

std::string Printable(std::string_view text) {
    std::string printable;
    std::size_t missing = 0; // bytes of a character that has begun
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool goes_on = (byte & 0xc0) == 0x80;
        const bool is_steering =
            byte == 0xc2 && i + 1 < text.size() && (static_cast<unsigned char>(text[i + 1]) & 0xe0) == 0x80;
        if (is_steering)
            ++i;
        const bool is_good = byte >= ' ' && byte != 0x7f && !is_steering && (!goes_on || missing > 0);
        printable += is_good ? text[i] : '?';
        missing = goes_on                      ? missing - (missing > 0 ? 1 : 0)
                  : is_steering || byte < 0xc2 ? 0
                  : byte < 0xe0                ? 1
                  : byte < 0xf0                ? 2
                                               : 3;
    }
    return printable;
}

} // namespace shell
