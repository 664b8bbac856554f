#pragma once

#include "reference/routing/watch.h"

#include <map>
#include <string>
#include <sys/types.h>

namespace reference::routing {

// The watches of all next hops, and the rules that act on what they find.
class Monitor {
public:
    ~Monitor();
    // Reads the configuration and does the first round of checks. False when it can't be read.
    [[nodiscard]] bool Begin();
    // Waits until something happens, for a short while at most, and does what is due.
    void Turn();

private:
    struct KnownRule {
        Dgdd::Rule rule;
        bool is_true;
    };

    void Reload();
    [[nodiscard]] bool Configure(const std::string& text);
    std::uint32_t FreeNumber() const;
    bool IsTrue(const Dgdd::Rule& rule) const;
    void RunRules();
    void Round();
    void Publish() const;

    Dgdd configuration_;
    std::string text_;
    Timing timing_{};
    std::map<std::string, Watch> watches_;
    std::map<std::string, KnownRule> rules_;
};

} // namespace reference::routing
