#include "reference/routing/daemon.h"

#include "reference/routing/dgdd.h"
#include "reference/routing/zdhcpd.h"
#include "reference/routing/zebra.h"

#include <algorithm>
#include <cstdio>

namespace reference::routing {

std::unique_ptr<Daemon> MakeDaemon(const std::string& name) {
    if (name == "zebra")
        return std::make_unique<Zebra>();
    if (name == "zdhcpd")
        return std::make_unique<Zdhcpd>();
    if (name == "dgdd")
        return std::make_unique<Dgdd>();
    return nullptr;
}

void LoadConfiguration(Daemon& daemon, const std::string& text) {
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string_view line = std::string_view(text).substr(start, end - start);
        const Words words = Split(line);
        if (words.empty() || words[0] == "!")
            daemon.LeaveSection();
        else if (!daemon.Configure(words))
            std::fprintf(stderr, "configuration: refused: %.*s\n", static_cast<int>(line.size()),
                         line.data());
        start = end + 1;
    }
    daemon.LeaveSection();
}

} // namespace reference::routing
